#include "cli/missingnes.h"

#include "lines/descriptor.h"

namespace NS_KX::NS_KXDU {

void MissingNes::Note(std::int64_t neId) {
    if (m_last.load(std::memory_order_relaxed) == neId || m_isFull.load(std::memory_order_relaxed)) {
        return;
    }
    m_last.store(neId, std::memory_order_relaxed);
    const std::lock_guard lock(m_mutex);
    m_neIds.insert(neId);
    m_isFull.store(m_neIds.size() > MOST, std::memory_order_relaxed);
}

std::string MissingNes::Text() const {
    const std::lock_guard lock(m_mutex);
    if (m_neIds.empty()) {
        return {};
    }
    const std::string first = "NE " + std::to_string(*m_neIds.begin());
    if (m_neIds.size() == 1) {
        return "kxdu: " + first + " is not in the inventory: " + m_consequence + "\n";
    }
    const std::string count =
        m_neIds.size() > MOST ? "more than " + std::to_string(MOST) : std::to_string(m_neIds.size());
    return "kxdu: " + count + " NEs, such as " + first + ", are not in the inventory: " + m_consequence + "\n";
}

void MissingNes::Tell() const {
    WriteMessage(Text());
}

}  // namespace NS_KX::NS_KXDU
