#include "lines/fileinuse.h"

#include <system_error>

#include "lines/failure.h"

namespace NS_KX {

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code error;
    if (std::filesystem::exists(one, error) && std::filesystem::exists(other, error)) {
        return std::filesystem::is_regular_file(one, error) && std::filesystem::equivalent(one, other, error);
    }
    // Made absolute first: of a name without any folder that is not there, nothing else would be.
    const auto whole = std::filesystem::weakly_canonical(std::filesystem::absolute(one), error);
    return !error && whole == std::filesystem::weakly_canonical(std::filesystem::absolute(other), error) && !error;
}

void RefuseReplacing(const std::vector<FileInUse>& filesInUse, const std::string& target, std::string_view written) {
    if (target.empty() || target == "-") {
        return;
    }
    for (const auto& [name, role] : filesInUse) {
        if (IsSameFile(target, name)) {
            throw Failure(Cause::USAGE,
                          std::string(target).append(": ").append(written).append(" would replace the ").append(role));
        }
    }
}

}  // namespace NS_KX
