#include "catalogue/readfields.h"

#include <algorithm>

#include "catalogue/fieldtexts.h"

namespace NS_KX {

namespace {

// Gathers the fields of a record.
class FieldCollector : public FieldTexts {
public:
    std::vector<ReadField> fields;

private:
    void Text(std::string_view name, std::string_view text) override {
        FieldTexts::Text(name, std::string("\"").append(text).append("\""));
    }

    void Take(std::string_view name, std::string_view text) override {
        if (!name.substr(name.rfind('.') + 1).starts_with("reserved")) {
            fields.push_back({std::string(name), std::string(text), false});
        }
    }
};

}  // namespace

std::vector<ReadField> ReadFields(const std::string& fdn, const Kind& kind) {
    FieldCollector read;
    kind.Decode(fdn, read);
    FieldCollector unknown;
    kind.Describe(unknown);
    for (std::size_t place = 0; place < read.fields.size(); ++place) {
        read.fields[place].isKnown = read.fields[place].value != unknown.fields[place].value;
    }
    return read.fields;
}

bool IsNothingRead(const std::vector<ReadField>& fields) {
    return std::none_of(fields.begin(), fields.end(), [](const ReadField& field) { return field.isKnown; });
}

}  // namespace NS_KX
