#include "files/fileinuse.h"

#include "failure.h"
#include "files/samefile.h"

namespace NS_KXDU {

void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target, std::string_view written) {
    if (target.empty() || target == "-") {
        return;
    }
    for (const auto& [name, role] : filesInUse) {
        if (IsSameFile(target, name)) {
            throw Failure(ExitCode::USAGE,
                          std::string(target).append(": ").append(written).append(" would replace the ").append(role));
        }
    }
}

}  // namespace NS_KXDU
