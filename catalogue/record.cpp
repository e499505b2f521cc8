#include "catalogue/record.h"

#include <algorithm>

namespace NS_KX {

void* AnyRecord::Of(const RecordLayout& layout) {
    const auto made =
        std::find_if(m_made.begin(), m_made.end(), [&](const Made& each) { return each.layout == &layout; });
    return made != m_made.end() ? made->record.get() : m_made.emplace_back(Made{&layout, layout.make()}).record.get();
}

}  // namespace NS_KX
