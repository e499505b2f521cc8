/// The reader of configuration files reads a file, or reports the place of its error.
#include <algorithm>
#include <optional>
#include <stdexcept>

#include <toml++/toml.h>

#include "fuzz/input.h"
#include "fuzz/memoryfile.h"
#include "standalone/src/tomldepth.h"
#include "standalone/src/tomlfile.h"

namespace {

using NS_FUZZ::ExpectEqual;

// How deep the tables and arrays of a node are nested.
std::size_t DepthOf(const toml::node& node) {
    std::size_t inside = 0;
    if (const auto* const table = node.as_table()) {
        for (const auto& [key, child] : *table) {
            inside = std::max(inside, DepthOf(child));
        }
    } else if (const auto* const array = node.as_array()) {
        for (const toml::node& child : *array) {
            inside = std::max(inside, DepthOf(child));
        }
    } else {
        return 0;
    }
    return inside + 1;
}

std::optional<std::size_t> ParsedDepth(std::string_view text) try {
    return DepthOf(toml::parse(text)) - 1;
} catch (const toml::parse_error&) {
    return std::nullopt;
}

// A text that parses is refused if and only if it is nested too deep. Each part of a header may be an array of tables,
// so the tables may be twice as deep as the text.
void CheckDepth(std::string_view text) {
    const std::optional<std::size_t> depth = ParsedDepth(text);
    if (!depth) {
        return;
    }
    const bool isRefused = NS_STANDALONE::FindTooDeep(text).has_value();
    ExpectEqual(isRefused && *depth < NS_STANDALONE::MAX_TOML_DEPTH, false, "a refusal of what is not deep", text);
    ExpectEqual(!isRefused && *depth > 2 * NS_STANDALONE::MAX_TOML_DEPTH, false, "what is too deep and taken", text);
}

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
    CheckDepth(text);
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
