#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX {

/// A file that a run reads, or writes beside another.
struct FileInUse {
    std::string name;
    std::string_view role;  ///< what messages call it, such as "input"
};

/// Throws `Failure` with `Cause::USAGE` when `target` is one of these files, by whatever path or link: what is written
/// there would replace it. Standard output, "" or "-", replaces none.
void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target,
                     std::string_view written = "the output");

/// Throws `Failure` with `Cause::USAGE` when `target` has the name under which SQLite looks for the journal of a
/// database that is there: SQLite would read the file, and delete it.
void RefuseJournalOfDatabase(const std::filesystem::path& target);

/// Whether both names lead to one file, by whatever path or link; for files that are not there, whether they would.
/// False for devices and pipes: what is written there replaces nothing.
bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace NS_KX
