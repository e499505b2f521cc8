/// The reader of configuration files: it reads, or tells where it cannot.
#include <stdexcept>

#include "fuzz/input.h"
#include "fuzz/memoryfile.h"
#include "standalone/src/tomlfile.h"

namespace {

using NS_FUZZ::ExpectEqual;

// Complaints begin with "file:line:column: ".
void ExpectPlace(std::string_view complaint, const std::string& file, std::string_view text) {
    const auto line = file.size() + 1;
    ExpectEqual(complaint.substr(0, line), file + ":", "the file in a complaint", text);
    const auto column = complaint.find(':', line) + 1;
    const auto end = complaint.find(": ", column);
    const auto isNumber = [&](std::size_t from, std::size_t to) {
        return from < to && complaint.substr(from, to - from).find_first_not_of("0123456789") == std::string_view::npos;
    };
    ExpectEqual(isNumber(line, column - 1) && isNumber(column, end), true, "the place in a complaint", text);
    ExpectEqual(complaint.size() > end + 2, true, "the reason in a complaint", text);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = NS_FUZZ::ToText(data, size);
    const NS_FUZZ::MemoryFile file(text);
    try {
        const NS_STANDALONE::TomlFile toml = NS_STANDALONE::ReadTomlFile(file.Name());
        for (const auto& [key, number] : toml.sections.at("")) {
            ExpectEqual(toml.items.at(key), std::to_string(number), "the item " + key, text);
        }
        for (const std::string& misfit : toml.misfits) {
            ExpectPlace(misfit, file.Name(), text);
        }
    } catch (const std::runtime_error& complaint) {
        ExpectPlace(complaint.what(), file.Name(), text);
    }
    return 0;
}
