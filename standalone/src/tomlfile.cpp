#include "tomlfile.h"

#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <toml++/toml.h>

namespace NS_STANDALONE {

namespace {

std::string PlaceText(const std::filesystem::path& file, const toml::source_position& position) {
    return file.string() + ":" + std::to_string(position.line) + ":" + std::to_string(position.column) + ": ";
}

toml::table Parse(const std::filesystem::path& file) {
    try {
        return toml::parse_file(file.string());
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
