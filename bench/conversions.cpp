// Readers and writers, and the grammar that they rest on.
#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <kx_domain_util/resIDUtil.h>

#include "measurement.h"
#include "rows.h"

namespace NS_BENCH {

namespace {

using NS_DOMAIN::PortIndex;
using NS_TEST::LiteralResIDUtil;
using NS_TEST::MapReader;
using NS_TEST::Reader;
using NS_TEST::Writer;
using NS_UTIL::MocLvlValueMap;
using NS_UTIL::ResIDUtil;

Subject<std::string> TextSubject(const std::string& name, const char* group, std::vector<std::string> texts) {
    Subject<std::string> subject{name, group, std::move(texts)};
    subject.bytes = BytesOf(subject.inputs);
    return subject;
}

void AddReaders(const Corpus& corpus) {
    NS_TEST::ForEachReaderOfText([&corpus]<class Record>(const Reader<Record>& reader) {
        AddPair(TextSubject(NameOf(reader), "readers", IdentifiersFor(reader.name, corpus)),
                ReadCall<Record>{reader.library, {}}, ReadCall<Record>{reader.literal, {}});
    });
}

void AddReadersOfMaps(const Corpus& corpus) {
    NS_TEST::ForEachReaderOfMap([&corpus]<class Record>(const MapReader<Record>& reader) {
        const std::vector<std::string> identifiers = IdentifiersFor(reader.name, corpus);
        AddPair(Subject<MocLvlValueMap>{NameOf(reader), "readers", MapsOf(identifiers), BytesOf(identifiers)},
                MapReadCall<Record>{reader.library, {}}, MapReadCall<Record>{reader.literal, {}});
    });
}

void AddWriters(const Corpus& corpus) {
    NS_TEST::ForEachWriter([&corpus]<class Record>(const Writer<Record>& writer) {
        Subject<WriterCase<Record>> subject{NameOf(writer), "writers", CasesFor(writer, corpus)};
        WriteCall<Record> library{writer.library, {}};
        for (const WriterCase<Record>& input : subject.inputs) {
            subject.bytes += library(input).size();
        }
        AddPair(std::move(subject), library, WriteCall<Record>{writer.literal, {}});
    });
}

// Measures `call`. Its arguments are the converting class as a std::type_identity, an input, and an answer to fill,
// which is the same object in all calls.
template <class Answer, class Input, class Call>
void AddByClass(Subject<Input> subject, Call call) {
    const auto by = [call](auto conversions) {
        return [call, conversions, answer = Answer()](const Input& input) mutable -> const Answer& {
            call(conversions, input, answer);
            return answer;
        };
    };
    AddPair(std::move(subject), by(std::type_identity<ResIDUtil>{}), by(std::type_identity<LiteralResIDUtil>{}));
}

void AddGrammar(const Corpus& corpus) {
    using Text = std::string;
    using Texts = std::vector<std::string>;
    AddByClass<MocLvlValueMap>(
        TextSubject("Fdn2MocLvlValueMap", "grammar", corpus.All()),
        []<class By>(By, const Text& fdn, MocLvlValueMap& map) { By::type::Fdn2MocLvlValueMap(fdn, map); });
    AddByClass<int>(Subject<MocLvlValueMap>{"GetValueByMocLvlName", "grammar", MapsOf(corpus.All())},
                    [tag = Text("S")]<class By>(By, const MocLvlValueMap& map, int& value) {
                        By::type::GetValueByMocLvlName(tag, map, value);
                    });
    AddByClass<Texts>(TextSubject("ResolveFDNByMoc", "grammar", IdentifiersFor("ResID2PortIndex", corpus)),
                      []<class By>(By, const Text& fdn, Texts& values) {
                          values.clear();
                          By::type::ResolveFDNByMoc(fdn, "PP=", 4, values);
                      });
    AddByClass<Text>(TextSubject("GetMOCFromFDN", "grammar", corpus.All()),
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
    AddByClass<std::pair<Text, Texts>>(TextSubject("ResolveMocLevelObj", "grammar", levels),
                                       []<class By>(By, const Text& level, std::pair<Text, Texts>& parts) {
                                           parts.second.clear();
                                           By::type::ResolveMocLevelObj(level, parts.first, parts.second);
                                       });
    AddByClass<Text>(std::move(split), []<class By>(By, const std::pair<Text, Texts>& parts, Text& level) {
        By::type::ConstructMocLevelObj(parts.first, parts.second, level);
    });
}

// Looks at each byte of a text once, one after the other, as every reader without vectors must. The bytes are volatile,
// so that the compiler does not use vectors.
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

// Calls the class directly to read and write a port, not through a pointer.
template <class Conversions>
struct PortReading {
    PortIndex port;

    const PortIndex& operator()(const std::string& fdn) {
        Conversions::ResID2PortIndex(fdn, port);
        return port;
    }
};

template <class Conversions>
struct PortWriting {
    std::string fdn;

    const std::string& operator()(const PortIndex& port) {
        Conversions::PortIndex2ResID(port, fdn, port.isLogical);
        return fdn;
    }
};

// The records read from `texts`.
Subject<PortIndex> PortSubject(const std::string& name, const char* group, const std::vector<std::string>& texts) {
    Subject<PortIndex> subject{name, group, {}, BytesOf(texts)};
    PortReading<ResIDUtil> read;
    for (const std::string& fdn : texts) {
        read.port = PortIndex();
        subject.inputs.push_back(read(fdn));
    }
    return subject;
}

template <class Input>
auto Share(Subject<Input> subject) {
    return std::make_shared<const Subject<Input>>(std::move(subject));
}

// Ports of 60 bytes that are written exactly as they are read, so that both can be compared with the same commas.
std::vector<std::string> SixtyBytePorts(const Corpus& corpus) {
    std::vector<std::string> texts = corpus.SixtyBytePorts();
    PortReading<ResIDUtil> read;
    PortWriting<ResIDUtil> write;
    std::erase_if(texts, [&](const std::string& fdn) {
        read.port = PortIndex();
        return write(read(fdn)) != fdn;
    });
    return texts;
}

// A port of 60 bytes, beside counting its commas.
void AddYardstick(const Corpus& corpus) {
    const std::vector<std::string> texts = SixtyBytePorts(corpus);
    Add(Share(TextSubject("60-byte port, commas counted", "yardstick", texts)), "library", CommaCount{})
        ->Threads(1)
        ->Threads(2);
    Add(Share(TextSubject("60-byte port, read", "yardstick", texts)), "library", PortReading<ResIDUtil>())->Threads(1);
    Add(Share(PortSubject("60-byte port, written", "yardstick", texts)), "library", PortWriting<ResIDUtil>())
        ->Threads(1);
}

// Measures a call while other threads convert: the same inputs on more and more threads.
template <class Input, class Call>
void AddThreads(const Subject<Input>& inputs, const Call& call) {
    for (const int threads : {1, 2, 4, 8}) {
        Subject<Input> subject = inputs;
        subject.name += " on " + std::to_string(threads) + (threads == 1 ? " thread" : " threads");
        Add(Share(std::move(subject)), "library", call)->Threads(threads);
    }
}

void AddThreads(const Corpus& corpus) {
    const std::vector<std::string> texts = SixtyBytePorts(corpus);
    AddThreads(TextSubject("60-byte port, read", "threads", texts), PortReading<ResIDUtil>());
    AddThreads(PortSubject("60-byte port, written", "threads", texts), PortWriting<ResIDUtil>());
}

// Texts that differ in their NE.
std::vector<std::string> TextsBehindNEs(const std::string& levels) {
    std::vector<std::string> texts;
    for (std::size_t neId = 10'000; neId < 10'000 + Corpus::LEAST; ++neId) {
        texts.push_back("NE=" + std::to_string(neId) + levels);
    }
    return texts;
}

// How the cost grows with the text: ports with longer and longer names, and ports with more and more levels after them.
void AddLengths() {
    const std::string port = ",FR=1,S=12,CP=-1,PP=16|1025|7|";
    for (const std::size_t length : {48, 96, 192, 384, 768, 1536}) {
        std::vector<std::string> texts = TextsBehindNEs(port);
        for (std::string& fdn : texts) {
            fdn.resize(length, 'n');
        }
        const std::string name = "port of " + std::to_string(length) + " bytes";
        AddPair(TextSubject(name + ", read", "length", texts), PortReading<ResIDUtil>(),
                PortReading<LiteralResIDUtil>());
        AddPair(PortSubject(name + ", written", "length", texts), PortWriting<ResIDUtil>(),
                PortWriting<LiteralResIDUtil>());
    }
    for (const std::size_t count : {1, 4, 16, 64, 256}) {
        std::string levels = port + "n";
        for (std::size_t level = 0; level < count; ++level) {
            levels += ",VC4=1";
        }
        AddPair(TextSubject("port before " + std::to_string(count) + (count == 1 ? " level, read" : " levels, read"),
                            "length", TextsBehindNEs(levels)),
                PortReading<ResIDUtil>(), PortReading<LiteralResIDUtil>());
    }
}

}  // namespace

void AddConversions(const Corpus& corpus) {
    AddReaders(corpus);
    AddReadersOfMaps(corpus);
    AddWriters(corpus);
    AddGrammar(corpus);
    AddYardstick(corpus);
    AddThreads(corpus);
    AddLengths();
}

}  // namespace NS_BENCH
