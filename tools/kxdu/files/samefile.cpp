#include "files/samefile.h"

#include <system_error>

namespace NS_KXDU {

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code error;
    if (std::filesystem::exists(one, error) && std::filesystem::exists(other, error)) {
        return std::filesystem::is_regular_file(one, error) && std::filesystem::equivalent(one, other, error);
    }
    // Made absolute first: of a name without any folder that is not there, nothing else would be.
    const auto whole = std::filesystem::weakly_canonical(std::filesystem::absolute(one), error);
    return !error && whole == std::filesystem::weakly_canonical(std::filesystem::absolute(other), error) && !error;
}

}  // namespace NS_KXDU
