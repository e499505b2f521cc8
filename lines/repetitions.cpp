#include "lines/repetitions.h"

#include <functional>

namespace NS_KX {

bool Repetitions::IsShown(std::string_view message) {
    const std::string_view kind = message.substr(0, message.find('"'));
    const auto known = m_counts.find(kind);
    std::uint64_t& count = known != m_counts.end() ? known->second : m_counts[std::string(kind)];
    if (count == MOST_SHOWN) {
        ++m_hidden;
        return false;
    }
    ++count;
    return true;
}

}  // namespace NS_KX
