#include "report/page.h"

#include <array>
#include <chrono>
#include <ctime>
#include <map>
#include <string_view>
#include <type_traits>
#include <utility>

#include <kx_domain_util/constanttables.h>
#include <kx_domain_util/portrules.h>

#include "catalogue/kinds.h"
#include "catalogue/vocabulary.h"
#include "formats/json.h"
#include "report/pageparts.h"
#include "text/displaytext.h"
#include "text/textbuffer.h"
#include "text/utf8.h"

namespace NS_KX::NS_KXDU {

namespace {

// ---- JSON -----------------------------------------------------------------------------------------------------------

// Writes JSON piece by piece: puts the commas.
class Json {
public:
    explicit Json(TextBuffer& out) noexcept : m_out(out) {}

    void Text(std::string_view text) {
        Next();
        // Names of files need not be UTF-8.
        AppendJsonText(FindInvalidUtf8(text) == text.size() ? text : Printable(text), m_out);
    }
    void TextOrNull(std::string_view text) { text.empty() ? Word("null") : Text(text); }
    void Number(std::int64_t number) {
        Next();
        AppendNumber(m_out, number);
    }
    void Flag(bool flag) { Word(flag ? "true" : "false"); }
    void Null() { Word("null"); }

    // An array of texts and numbers.
    template <class... Values>
    void Row(const Values&... values) {
        Array([&] { (Value(values), ...); });
    }

    // Begins the value of a member.
    void Key(std::string_view key) {
        Text(key);
        m_out.Put(':');
        m_isFirst = true;
    }
    template <class Fill>
    void Object(Fill fill) {
        Enclose('{', '}', fill);
    }
    template <class Fill>
    void Array(Fill fill) {
        Enclose('[', ']', fill);
    }

private:
    void Value(std::string_view text) { Text(text); }
    template <class Number>
    requires std::is_integral_v<Number>
    void Value(Number number) {
        Next();
        AppendNumber(m_out, number);
    }
    void Next() {
        if (!m_isFirst) {
            m_out.Put(',');
        }
        m_isFirst = false;
    }
    void Word(std::string_view word) {
        Next();
        Append(m_out, word);
    }
    template <class Fill>
    void Enclose(char begin, char end, Fill fill) {
        Next();
        m_out.Put(begin);
        m_isFirst = true;
        fill();
        m_out.Put(end);
        m_isFirst = false;
    }

    TextBuffer& m_out;
    bool m_isFirst = true;
};

// ---- The vocabulary -------------------------------------------------------------------------------------------------

void WriteTags(Json& json) {
    json.Object([&] {
        for (const Tag* const tag : AllTags()) {
            json.Key(tag->name);
            json.Object([&] {
                json.Key("meaning");
                json.Text(tag->meaning);
                json.Key("least");
                json.Number(static_cast<std::int64_t>(tag->least));
                json.Key("isOpen");
                json.Flag(tag->isOpen);
                json.Key("isReadWhole");
                json.Flag(tag->isReadWhole);
                json.Key("subValues");
                json.Array([&] {
                    for (std::size_t place = 0; place < tag->most; ++place) {
                        const SubValue& subValue = tag->subValues.at(place);
                        json.Row(subValue.kind == SubValueKind::TEXT ? "text" : "number", subValue.meaning);
                    }
                });
            });
        }
    });
}

// The FB types of which something is known: name and interface level.
void WriteFbTypes(Json& json) {
    struct FbType {
        std::string name;
        std::optional<int> level;
    };
    std::map<int, FbType> fbTypes;
    for (const auto& row : NS_UTIL::GetFbTypeNameRows()) {
        fbTypes[row.fbType].name = NameOfFbType(row.fbType).value_or("");
    }
    for (const auto& row : NS_UTIL::GetFbTypeLevelRows()) {
        fbTypes[row.fbType].level = LevelOfFbType(row.fbType);
    }
    json.Object([&] {
        for (const auto& known : fbTypes) {
            json.Key(std::to_string(known.first));
            json.Array([&] {
                json.TextOrNull(known.second.name);
                known.second.level ? json.Number(*known.second.level) : json.Null();
            });
        }
    });
}

void WriteVocabulary(Json& json) {
    json.Key("kinds");
    json.Array([&] {
        for (const Kind* const kind : AllKinds()) {
            json.Text(kind->word);
        }
    });
    json.Key("tags");
    WriteTags(json);
    json.Key("fbTypeNames");
    WriteFbTypes(json);
    json.Key("escapedNames");  // the FB types of ports whose names may hold an escaped "|"
    json.Array([&] {
        for (const auto& rules : NS_UTIL::PORT_RULES) {
            if (rules.hasEscapedName) {
                json.Number(rules.fbType);
            }
        }
    });
    json.Key("rates");
    json.Object([&] {
        for (const auto& row : NS_UTIL::GetClientRateRows()) {
            json.Key(std::to_string(row.level));
            json.Text(row.name);
        }
    });
}

// ---- The counts -----------------------------------------------------------------------------------------------------

std::uint64_t CountPorts(const std::vector<CountRow>& kindRows) {
    for (const CountRow& row : kindRows) {
        if (row.value == "port") {
            return row.count;
        }
    }
    return 0;
}

void WriteRows(Json& json, std::string_view key, const std::vector<CountRow>& rows) {
    json.Key(key);
    json.Array([&] {
        for (const CountRow& row : rows) {
            json.Array([&] {
                json.TextOrNull(row.value);
                json.TextOrNull(row.name);
                json.Number(static_cast<std::int64_t>(row.count));
            });
        }
    });
}

void WriteTotals(Json& json, const Network& network) {
    const Statistics& statistics = network.statistics;
    json.Key("total");
    json.Object([&] {
        const std::array<std::pair<std::string_view, std::uint64_t>, 4> totals{
            {{"lines", statistics.lines},
             {"nes", network.nes.size()},
             {"ports", CountPorts(KindRows(statistics))},
             {"problemLines", statistics.problemLines}}};
        for (const auto& [name, count] : totals) {
            json.Key(name);
            json.Number(static_cast<std::int64_t>(count));
        }
    });
}

void WriteCounts(Json& json, const PageContent& content) {
    const Statistics& statistics = content.network.statistics;
    json.Key("counts");
    json.Object([&] {
        WriteRows(json, "kind", KindRows(statistics));
        WriteRows(json, "level", LevelRows(statistics));
        WriteRows(json, "fb-type", FbTypeRows(statistics));
        if (content.inventory != nullptr) {
            const NeFamilies families(*content.inventory);
            WriteRows(json, "layer", families.DomainRows(NS_STANDALONE::DomainCache::NE_TYPE_LIST, statistics));
            WriteRows(json, "family", families.DomainRows(NS_STANDALONE::DomainCache::EQUIPMENT_TYPE, statistics));
            WriteRows(json, "ne-type", families.NeTypeRows(statistics));
        }
    });
}

void WriteProblems(Json& json, const Statistics& statistics) {
    json.Key("problems");
    json.Array([&] {
        for (const CountRow& row : ProblemRows(statistics)) {
            json.Array([&] {
                json.Text(row.value);
                json.Number(static_cast<std::int64_t>(row.count));
                json.Array([&] {
                    for (const auto& [place, text] : statistics.problems.at(row.value).places) {
                        json.Row(place, text);
                    }
                });
            });
        }
    });
}

// ---- The NEs --------------------------------------------------------------------------------------------------------

void WriteNes(Json& json, const PageContent& content) {
    constexpr int NO_TYPE = -1;
    const auto families = content.inventory != nullptr ? std::optional(NeFamilies(*content.inventory)) : std::nullopt;
    json.Key("nes");
    json.Array([&] {
        for (const auto& [neId, identifiers] : content.network.nes) {
            const auto type = families ? families->TypeOf(neId) : std::nullopt;
            json.Row(neId, type ? int{*type} : NO_TYPE, identifiers.count, identifiers.ports, identifiers.problems);
        }
    });
    json.Key("neTypes");
    json.Object([&] {
        if (content.inventory != nullptr) {
            for (const auto& row : content.inventory->neTypes) {
                json.Key(std::to_string(row.neType));
                json.Text(row.name);
            }
        }
    });
    json.Key("identifiers");
    json.Array([&] {
        for (const auto& [neId, identifiers] : content.network.nes) {
            json.Text(identifiers.text);
        }
    });
}

void WriteAlarms(Json& json, const Alarms& alarms, const std::string& file) {
    json.Object([&] {
        json.Key("file");
        json.Text(file);
        json.Key("total");
        json.Number(static_cast<std::int64_t>(alarms.total));
        json.Key("unread");
        json.Number(static_cast<std::int64_t>(alarms.unread));
        json.Key("nes");
        json.Array([&] {
            for (const auto& ne : alarms.nes) {
                json.Array([&] {
                    json.Number(ne.first);
                    json.Array([&] {
                        for (const auto& [fdn, count] : ne.second) {
                            json.Row(fdn, count);
                        }
                    });
                });
            }
        });
    });
}

// ---- The page -------------------------------------------------------------------------------------------------------

std::string TimeNow() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm parts{};
    std::array<char, 32> text{};
    gmtime_r(&now, &parts);
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M UTC", &parts)};
}

std::string_view WordOf(ProblemSearch search) {
    return search == ProblemSearch::NONE ? "none" : search == ProblemSearch::LEVELS ? "levels" : "all";
}

void WriteData(const PageContent& content, Json& json) {
    json.Object([&] {
        json.Key("made");
        json.Text(TimeNow());
        json.Key("inputs");
        json.Array([&] {
            for (const std::string& input : content.inputs) {
                json.Text(input);
            }
        });
        json.Key("hasInventory");
        json.Flag(content.inventory != nullptr);
        json.Key("inventory");
        json.TextOrNull(content.inventoryName);
        json.Key("search");
        json.Text(WordOf(content.search));
        WriteVocabulary(json);
        WriteTotals(json, content.network);
        WriteCounts(json, content);
        WriteProblems(json, content.network.statistics);
        json.Key("alarms");
        content.alarms != nullptr ? WriteAlarms(json, *content.alarms, content.alarmsName) : json.Null();
        WriteNes(json, content);
    });
}

// "<" stands only in texts of JSON. Written as an escape, it cannot end the script element.
void WriteEscaped(std::string_view json, BufferedOutput& output) {
    for (auto less = json.find('<'); less != std::string_view::npos; less = json.find('<')) {
        output.Write(json.substr(0, less));
        output.Write("\\u003C");
        json.remove_prefix(less + 1);
    }
    output.Write(json);
}

}  // namespace

void WritePage(const PageContent& content, BufferedOutput& output) {
    TextBuffer data;
    Json json(data);
    WriteData(content, json);
    std::string_view rest = PAGE_HTML;
    const auto writeUpTo = [&](std::string_view mark) {
        const auto at = rest.find(mark);
        output.Write(rest.substr(0, at));
        rest.remove_prefix(at + mark.size());
    };
    writeUpTo("{{style}}");
    output.Write(PAGE_STYLE);
    writeUpTo("{{data}}");
    WriteEscaped(data.View(), output);
    writeUpTo("{{script}}");
    output.Write(PAGE_SCRIPT);
    output.Write(rest);
}

}  // namespace NS_KX::NS_KXDU
