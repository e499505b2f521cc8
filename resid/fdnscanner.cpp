#include <kx_domain_util/fdnscanner.h>

namespace NS_UTIL::NS_FDN {

Level SplitLevel(std::string_view text) noexcept {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos) {
        return {text, text.substr(text.size())};
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

}  // namespace NS_UTIL::NS_FDN
