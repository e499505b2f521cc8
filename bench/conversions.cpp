// Readers and writers, and the grammar that they rest on.
#include <string>
#include <utility>
#include <vector>

#include "measurement.h"
#include "rows.h"

namespace NS_BENCH {

namespace {

using NS_TEST::LiteralResIDUtil;
using NS_TEST::Reader;
using NS_TEST::Writer;
using NS_UTIL::MocLvlValueMap;
using NS_UTIL::ResIDUtil;

std::size_t BytesOf(const std::vector<std::string>& texts) {
    std::size_t bytes = 0;
    for (const std::string& text : texts) {
        bytes += text.size();
    }
    return bytes;
}

void AddReaders(const Corpus& corpus) {
    NS_TEST::ForEachReader([&corpus]<class Record>(const Reader<Record>& reader) {
        if (ReadsMap(reader.name)) {
            return;
        }
        Subject<std::string> subject{NameOf(reader), "readers", IdentifiersFor(reader.name, corpus)};
        subject.bytes = BytesOf(subject.inputs);
        for (const std::string& fdn : subject.inputs) {
            Expect(ReadCall<Record>{reader.library, {}}(fdn) == ReadCall<Record>{reader.literal, {}}(fdn),
                   subject.name);
        }
        AddPair(std::move(subject), ReadCall<Record>{reader.library, {}}, ReadCall<Record>{reader.literal, {}});
    });
}

void AddWriters(const Corpus& corpus) {
    NS_TEST::ForEachWriter([&corpus]<class Record>(const Writer<Record>& writer) {
        Subject<WriterCase<Record>> subject{NameOf(writer), "writers", CasesFor(writer, corpus)};
        WriteCall<Record> library{writer.library, {}};
        WriteCall<Record> literal{writer.literal, {}};
        for (const WriterCase<Record>& input : subject.inputs) {
            Expect(library(input) == literal(input), subject.name);
            subject.bytes += library.fdn.size();
        }
        AddPair(std::move(subject), library, literal);
    });
}

// Measures call, which is called with the class to convert by, as a std::type_identity, with an input and with an
// answer to fill, always the same.
template <class Answer, class Input, class Call>
void AddByClass(Subject<Input> subject, Call call) {
    const auto by = [call](auto conversions) {
        return [call, conversions, answer = Answer()](const Input& input) mutable -> const Answer& {
            call(conversions, input, answer);
            return answer;
        };
    };
    auto library = by(std::type_identity<ResIDUtil>{});
    auto literal = by(std::type_identity<LiteralResIDUtil>{});
    for (const Input& input : subject.inputs) {
        Expect(library(input) == literal(input), subject.name);
    }
    AddPair(std::move(subject), by(std::type_identity<ResIDUtil>{}), by(std::type_identity<LiteralResIDUtil>{}));
}

Subject<std::string> TextSubject(const char* name, std::vector<std::string> texts) {
    Subject<std::string> subject{name, "grammar", std::move(texts)};
    subject.bytes = BytesOf(subject.inputs);
    return subject;
}

Subject<MocLvlValueMap> MapSubject(const char* name, const std::vector<std::string>& identifiers) {
    Subject<MocLvlValueMap> subject{name, "grammar", {}};
    for (const std::string& fdn : identifiers) {
        ResIDUtil::Fdn2MocLvlValueMap(fdn, subject.inputs.emplace_back());
    }
    return subject;
}

void AddReadersOfMaps(const Corpus& corpus) {
    using namespace NS_DOMAIN;
    const auto maps = [&corpus](const char* name) { return MapSubject(name, IdentifiersFor(name, corpus)); };
    AddByClass<MDIndex>(maps("FillMDIndex"),
                        []<class By>(By, const MocLvlValueMap& map, MDIndex& md) { By::type::FillMDIndex(map, md); });
    AddByClass<MAIndex>(maps("FillMAIndex"),
                        []<class By>(By, const MocLvlValueMap& map, MAIndex& ma) { By::type::FillMAIndex(map, ma); });
    AddByClass<MIPIndex>(maps("FillMIPIndex"), []<class By>(By, const MocLvlValueMap& map, MIPIndex& mip) {
        By::type::FillMIPIndex(map, mip);
    });
}

void AddGrammar(const Corpus& corpus) {
    using Text = std::string;
    using Texts = std::vector<std::string>;
    AddByClass<MocLvlValueMap>(
        TextSubject("Fdn2MocLvlValueMap", corpus.All()),
        []<class By>(By, const Text& fdn, MocLvlValueMap& map) { By::type::Fdn2MocLvlValueMap(fdn, map); });
    AddByClass<int>(MapSubject("GetValueByMocLvlName", corpus.All()),
                    []<class By>(By, const MocLvlValueMap& map, int& value) {
                        static const Text& tag = *new Text("S");
                        By::type::GetValueByMocLvlName(tag, map, value);
                    });
    AddByClass<Texts>(TextSubject("ResolveFDNByMoc", IdentifiersFor("ResID2PortIndex", corpus)),
                      []<class By>(By, const Text& fdn, Texts& values) {
                          values.clear();
                          By::type::ResolveFDNByMoc(fdn, "PP=", 4, values);
                      });
    AddByClass<Text>(TextSubject("GetMOCFromFDN", corpus.All()),
                     []<class By>(By, const Text& fdn, Text& moc) { moc = By::type::GetMOCFromFDN(fdn); });

    Texts levels;
    Subject<std::pair<Text, Texts>> split{"ConstructMocLevelObj", "grammar", {}};
    for (const Text& fdn : IdentifiersFor("ResID2PortIndex", corpus)) {
        const auto begin = std::min(fdn.find("PP="), fdn.find("LP="));
        const Text& level = levels.emplace_back(fdn.substr(begin, fdn.find(',', begin) - begin));
        auto& [tag, values] = split.inputs.emplace_back();
        ResIDUtil::ResolveMocLevelObj(level, tag, values);
        split.bytes += level.size();
    }
    AddByClass<std::pair<Text, Texts>>(TextSubject("ResolveMocLevelObj", levels),
                                       []<class By>(By, const Text& level, std::pair<Text, Texts>& parts) {
                                           parts.second.clear();
                                           By::type::ResolveMocLevelObj(level, parts.first, parts.second);
                                       });
    AddByClass<Text>(std::move(split), []<class By>(By, const std::pair<Text, Texts>& parts, Text& level) {
        By::type::ConstructMocLevelObj(parts.first, parts.second, level);
    });
}

// What it costs to look at each byte of a text once, one after the other: what a reader cannot do without, when it has
// no vectors. The bytes are volatile, so that the compiler does not make vectors of them.
struct CommaCount {
    std::size_t operator()(const std::string& text) const {
        std::size_t commas = 0;
        const volatile char* const bytes = text.data();
        for (std::size_t at = 0; at < text.size(); ++at) {
            commas += bytes[at] == ',' ? 1 : 0;
        }
        return commas;
    }
};

// A port of 60 bytes, beside counting its commas.
void AddYardstick(const Corpus& corpus) {
    using NS_DOMAIN::PortIndex;
    Subject<std::string> ports{"60-byte port, read", "yardstick", corpus.SixtyBytePorts()};
    ports.bytes = BytesOf(ports.inputs);
    Subject<std::string> commas = ports;
    commas.name = "60-byte port, commas counted";
    Subject<WriterCase<PortIndex>> records{"60-byte port, written", "yardstick", {}, ports.bytes};
    for (const std::string& fdn : ports.inputs) {
        const auto record = ReadRecord<PortIndex>("PortIndex", fdn);
        records.inputs.push_back({record, {record.isLogical, 0}});
    }
    const auto share = [](auto subject) { return std::make_shared<const decltype(subject)>(std::move(subject)); };
    Add(share(std::move(commas)), "library", CommaCount{})->Threads(1)->Threads(2);
    Add(share(std::move(ports)), "library", ReadCall<PortIndex>{&ResIDUtil::ResID2PortIndex, {}})->Threads(1);
    const auto write = [](const PortIndex& port, std::string& fdn, const NS_TEST::WriterArguments& arguments) {
        ResIDUtil::PortIndex2ResID(port, fdn, arguments.flag);
    };
    Add(share(std::move(records)), "library", WriteCall<PortIndex>{write, {}})->Threads(1);
}

// How cost grows with the text: ports whose names make them this long.
void AddLengths() {
    for (const std::size_t length : {48, 96, 192, 384, 768, 1536}) {
        const std::string name = "port of " + std::to_string(length) + " bytes";
        Subject<std::string> texts{name + ", read", "length", {}};
        Subject<WriterCase<NS_DOMAIN::PortIndex>> records{name + ", written", "length", {}};
        for (std::size_t neId = 10'000; neId < 10'000 + Corpus::LEAST; ++neId) {
            std::string& fdn =
                texts.inputs.emplace_back("NE=" + std::to_string(neId) + ",FR=1,S=12,CP=-1,PP=16|1025|7|");
            fdn.resize(length, 'n');
            records.inputs.push_back({ReadRecord<NS_DOMAIN::PortIndex>("PortIndex", fdn), {}});
        }
        texts.bytes = records.bytes = length * Corpus::LEAST;
        NS_TEST::ForEachReader([&texts]<class Record>(const Reader<Record>& reader) {
            if constexpr (std::is_same_v<Record, NS_DOMAIN::PortIndex>) {
                if (reader.name == "ResID2PortIndex") {
                    AddPair(texts, ReadCall<Record>{reader.library, {}}, ReadCall<Record>{reader.literal, {}});
                }
            }
        });
        NS_TEST::ForEachWriter([&records]<class Record>(const Writer<Record>& writer) {
            if constexpr (std::is_same_v<Record, NS_DOMAIN::PortIndex>) {
                if (writer.name == "PortIndex2ResID") {
                    AddPair(records, WriteCall<Record>{writer.library, {}}, WriteCall<Record>{writer.literal, {}});
                }
            }
        });
    }
}

}  // namespace

void AddConversions(const Corpus& corpus) {
    AddReaders(corpus);
    AddWriters(corpus);
    AddReadersOfMaps(corpus);
    AddGrammar(corpus);
    AddYardstick(corpus);
    AddLengths();
}

}  // namespace NS_BENCH
