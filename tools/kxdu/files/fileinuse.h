#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace NS_KXDU {

/// A file that a run reads, or writes beside another.
struct FileInUse {
    std::string name;
    std::string_view role;  ///< what messages call it, such as "input"
};

/// Throws `Failure` with `ExitCode::USAGE` when target is one of these files, by whatever path or link: what is written
/// there would replace it. Standard output, "" or "-", replaces none.
void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target,
                     std::string_view written = "the output");

}  // namespace NS_KXDU
