/// Room in the texts of a caller's record, for tests of the allocations of conversions.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

#include "support/recordfields.h"

namespace NS_TEST {

/// Calls visit with each text of record and of the records in it.
template <class Record, class Visit>
void ForEachText(Record& record, Visit visit) {
    ForEachField(record, [&visit](std::string_view, auto& field) {
        using Value = std::remove_const_t<std::remove_reference_t<decltype(field)>>;
        if constexpr (HasFields<Value>) {
            ForEachText(field, visit);
        } else if constexpr (std::is_same_v<Value, std::string>) {
            visit(field);
        }
    });
}

template <class Record>
void MakeRoom(Record& record) {
    constexpr std::size_t ROOM = 4096;
    ForEachText(record, [](std::string& text) { text.reserve(ROOM); });
}

/// Whether a text does not fit into the string object itself.
inline bool NeedsRoom(const std::string& text) {
    return text.size() > std::string().capacity();
}

/// Returns how many texts of a record do not fit into their string objects.
template <class Record>
std::size_t CountTextsThatNeedRoom(const Record& record) {
    std::size_t count = 0;
    ForEachText(record, [&count](const std::string& text) { count += NeedsRoom(text) ? 1 : 0; });
    return count;
}

}  // namespace NS_TEST
