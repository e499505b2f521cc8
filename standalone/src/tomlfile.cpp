#include "tomlfile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <toml++/toml.h>

#include "tomldepth.h"

namespace NS_STANDALONE {

namespace {

std::string PlaceText(const std::filesystem::path& file, std::size_t line, std::size_t column) {
    return file.string() + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
}

std::string PlaceText(const std::filesystem::path& file, const toml::source_position& position) {
    return PlaceText(file, position.line, position.column);
}

// The iterators read the buffer: the stream would mistake an error or exhausted memory for the end of the file.
std::string ReadText(const std::filesystem::path& file) try {
    const std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        throw std::runtime_error(file.string() + ": cannot be opened: " + std::generic_category().message(errno));
    }
    return {std::istreambuf_iterator<char>(stream.rdbuf()), {}};
} catch (const std::ios_base::failure&) {
    throw std::runtime_error(file.string() + ": cannot be read: " + std::generic_category().message(errno));
}

// The parser gets only the text: if it had to keep the file's name, it would end the process when memory runs out.
toml::table Parse(const std::filesystem::path& file) {
    const std::string text = ReadText(file);
    if (const std::optional<TextPlace> place = FindTooDeep(text)) {
        throw std::runtime_error(PlaceText(file, place->line, place->column) +
                                 "keys, tables and arrays are nested more than " + std::to_string(MAX_TOML_DEPTH) +
                                 " levels deep");
    }
    try {
        return toml::parse(text);
    } catch (const toml::parse_error& error) {
        throw std::runtime_error(PlaceText(file, error.source().begin) + std::string(error.description()));
    }
}

std::optional<std::int64_t> WholeNumber(const toml::node& node) {
    if (const auto* const flag = node.as_boolean()) {
        return flag->get() ? 1 : 0;
    }
    if (const auto* const number = node.as_integer()) {
        return number->get();
    }
    return std::nullopt;
}

TomlFile::IntItems ReadIntItems(const toml::table& table) {
    TomlFile::IntItems items;
    for (const auto& [key, node] : table) {
        const std::optional<std::int64_t> number = WholeNumber(node);
        if (number && std::in_range<int>(*number)) {
            items.emplace(key.str(), static_cast<int>(*number));
        }
    }
    return items;
}

std::string MisfitText(const std::filesystem::path& file, std::string_view key, const toml::node& node) {
    std::ostringstream text;
    text.exceptions(std::ios::badbit);  // else exhausted memory would silently shorten the text
    text << PlaceText(file, node.source().begin) << "item \"" << key << "\" is of type " << node.type()
         << "; only texts, whole numbers and booleans can be items";
    return text.str();
}

}  // namespace

TomlFile ReadTomlFile(const std::filesystem::path& file) {
    const toml::table top = Parse(file);
    TomlFile result;
    result.sections.emplace("", ReadIntItems(top));
    for (const auto& [key, node] : top) {
        if (const auto* const section = node.as_table()) {
            result.sections.emplace(key.str(), ReadIntItems(*section));
        } else if (const auto* const text = node.as_string()) {
            result.items.emplace(key.str(), text->get());
        } else if (const std::optional<std::int64_t> number = WholeNumber(node)) {
            result.items.emplace(key.str(), std::to_string(*number));
        } else {
            result.misfits.push_back(MisfitText(file, key.str(), node));
        }
    }
    return result;
}

}  // namespace NS_STANDALONE
