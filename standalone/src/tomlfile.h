#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace NS_STANDALONE {

/// A configuration file in TOML, as the services use it.
struct TomlFile {
    using IntItems = std::map<std::string, int>;

    std::map<std::string, std::string> items;  ///< top-level items as text: numbers in decimal, booleans as 0 or 1
    std::map<std::string, IntItems> sections;  ///< by name (top level: empty): numbers of 32 bits, booleans as 0 or 1
    std::vector<std::string> misfits;  ///< one error text, with its place, for each top-level item of another type
};

/// Reads `file`. Throws std::runtime_error: "file: " and the cause when it cannot be read, "file:line:column: " and the
/// cause when it does not parse or is nested too deep (`MAX_TOML_DEPTH`).
TomlFile ReadTomlFile(const std::filesystem::path& file);

}  // namespace NS_STANDALONE
