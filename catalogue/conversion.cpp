#include "catalogue/conversion.h"

#include "text/quoting.h"

namespace NS_KX {

void RequireWritable(const Field& field, std::string_view value) {
    if (field.isName && value.find_first_of(",|") != std::string_view::npos) {
        throw BadRecord("field " + Quoted(field.name) + " holds \",\" or \"|\", where it would end");
    }
    if (value.find_first_of(std::string_view("\0\n\r", 3)) != std::string_view::npos) {
        throw BadRecord("field " + Quoted(field.name) + " holds a line end or NUL");
    }
}

void Rewrite(const Kind& kind, std::string_view fdn, const NS_UTIL::Surroundings& surroundings, AnyRecord& record,
             std::string& canonical) {
    void* const fields = record.Fresh(kind.layout);
    kind.read(fdn, fields, surroundings);
    kind.write(fields, canonical, surroundings);
}

}  // namespace NS_KX
