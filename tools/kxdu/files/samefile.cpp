#include "files/samefile.h"

#include <system_error>

namespace NS_KXDU {

bool IsSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
    std::error_code error;
    if (std::filesystem::exists(one, error) && std::filesystem::exists(other, error)) {
        return std::filesystem::is_regular_file(one, error) && std::filesystem::equivalent(one, other, error);
    }
    const auto whole = std::filesystem::weakly_canonical(one, error);
    return !error && whole == std::filesystem::weakly_canonical(other, error) && !error;
}

}  // namespace NS_KXDU
