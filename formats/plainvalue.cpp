#include "formats/plainvalue.h"

#include <string_view>
#include <type_traits>

#include "formats/recordshape.h"

namespace NS_KX {

bool AppendKnownValue(const Field& field, const void* record, TextBuffer& out) {
    return VisitField(field, record, [&]<class Value>(const Value& value) {
        if constexpr (std::is_integral_v<Value> && !std::is_same_v<Value, bool>) {
            if (value == -1) {
                return false;
            }
        }
        AppendValue(value, out, [](std::string_view text, TextBuffer& to) { Append(to, text); });
        return true;
    });
}

}  // namespace NS_KX
