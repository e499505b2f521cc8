/// A reference implementation of the text helpers of `NS_UTIL::UtilCommon`, one character after the other. Tests and
/// fuzzers compare the library with it.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include <kx_domain_util/constanttables.h>

namespace NS_TEST {

/// Has the names and arguments of `NS_UTIL::UtilCommon`.
class LiteralUtilCommon {
public:
    static std::string GetMoc(const std::string& fdn) {
        long comma = -1;
        long equals = -1;
        for (long at = 0; at < static_cast<long>(fdn.size()); ++at) {
            const char letter = fdn[static_cast<std::size_t>(at)];
            comma = letter == ',' ? at : comma;
            equals = letter == '=' ? at : equals;
        }
        const std::string beforeEquals = equals < 0 ? fdn : std::string(fdn.begin(), fdn.begin() + equals);
        if (fdn.empty()) {
            return "";
        }
        if (comma >= 0 && equals >= 0 && equals > comma) {
            const std::string tag(fdn.begin() + comma + 1, fdn.begin() + equals);
            if (tag != "CLI_NAME") {
                return tag;
            }
            for (const char* port : {"PP", "LP"}) {
                if (fdn.find(std::string(port) + "=") != std::string::npos) {
                    return port;
                }
            }
            return "";
        }
        if (comma < 0 && equals >= 0) {
            return beforeEquals;
        }
        if (beforeEquals == "OS" || beforeEquals == "SYSTEM") {
            return "OS";
        }
        return "";
    }

    static void GetSplitePPDataByLine(std::map<int, std::string>& out, const std::string& line) {
        std::size_t start = 0;  // one past the last separator found
        for (int key = 0; key <= 2; ++key) {
            std::string field;
            std::size_t at = start;
            while (at < line.size() && line[at] != '|') {
                field += line[at++];
            }
            if (at < line.size()) {
                out[key] = field.empty() ? "-1" : field;
                start = at + 1;
            } else {
                start = 0;
            }
        }
        out[3] = "";
        for (std::size_t at = start; at < line.size(); ++at) {
            out[3] += line[at];
        }
    }

    static void GetSplitePATHDataByLine(std::map<int, int>& out, const std::string& line) {
        std::map<std::string, unsigned int> levels;
        for (const auto& row : NS_UTIL::GetClientRateRows()) {
            levels[std::string(row.name)] = row.level;
        }
        std::vector<std::string> items{""};
        for (const char letter : line) {
            if (letter == '-') {
                items.emplace_back();
            } else {
                items.back() += letter;
            }
        }
        for (const std::string& item : items) {
            const auto colon = item.find(':');
            if (colon == std::string::npos) {
                continue;
            }
            std::string name;
            for (const char letter : item.substr(0, colon)) {
                name += static_cast<char>(letter >= 'a' && letter <= 'z' ? letter - 32 : letter);
            }
            if (levels.count(name) != 0) {
                const std::string value = item.substr(colon + 1);
                out[static_cast<int>(levels[name])] =
                    static_cast<int>(static_cast<std::uint32_t>(std::strtol(value.c_str(), nullptr, 10)));
            }
        }
    }

    static void GetSpliteFDNData(std::map<std::string, std::string>& out, const std::string& text,
                                 const std::string& separator) {
        std::vector<std::string> items{""};
        for (std::size_t at = 0; at < text.size();) {
            if (!separator.empty() && text.compare(at, separator.size(), separator) == 0) {
                items.emplace_back();
                at += separator.size();
            } else {
                items.back() += text[at++];
            }
        }
        for (const std::string& item : items) {
            const auto equals = item.find('=');
            if (equals != std::string::npos) {
                out.insert({item.substr(0, equals), item.substr(equals + 1)});
            }
        }
    }
};

}  // namespace NS_TEST
