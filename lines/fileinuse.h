#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace NS_KX {

/// A file that a run uses, so that no output may replace it.
struct FileInUse {
    std::string name;
    std::string_view role;  ///< what messages call it, such as "input"
};

/// Throws `Failure` with `Cause::INPUT` if `target` is one of these files, by whatever path or link: writing there
/// would replace it. Standard output, "" or "-", replaces none.
void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target,
                     std::string_view written = "the output");

/// Throws `Failure` with `Cause::INPUT` if `target` has the name of a journal of an existing SQLite database: SQLite
/// would read the file and delete it.
void RefuseJournalOfDatabase(const std::filesystem::path& target);

/// Whether both names lead to the same file, by whatever path or link; if one is missing, whether they would. False for
/// devices and pipes, since writing there replaces nothing.
bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other);

}  // namespace NS_KX
