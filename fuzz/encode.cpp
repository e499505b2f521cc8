/// Lines of `kxdu encode`: the output is one line, and reading it into a record and writing that gives it back.
#include <array>
#include <utility>

#include <kx_domain_util/processexception.h>

#include "catalogue/conversion.h"
#include "formats/recordformat.h"
#include "formats/recordline.h"
#include "formats/recordrow.h"
#include "fuzz/input.h"
#include "support/conversionsurroundings.h"

namespace {

using namespace NS_KX;
using NS_FUZZ::ExpectEqual;

// An identifier, or why there is none.
struct Answer {
    std::string text;
    bool isWritten = false;

    bool operator==(const Answer&) const = default;
};

void PrintTo(const Answer& answer, std::ostream* out) {
    *out << (answer.isWritten ? "" : "no identifier: ") << testing::PrintToString(answer.text);
}

Answer Encode(RecordReader& record, std::string_view line) {
    try {
        record.Read(line);
        std::string fdn;
        record.GetKind().write(record.Record(), fdn, NS_UTIL::Surroundings::OfSystem());
        return {fdn, true};
    } catch (const BadRecord& bad) {
        return {bad.what()};
    }
}

// The line of column names, without its end.
std::string HeaderOf(OutputFormat format) {
    std::string header = MakeHeader({format, AllKinds()});
    header.pop_back();
    return header;
}

// Encoding a decoded identifier gives the same as writing its record directly.
void CompareWays(const std::string& fdn, const Kind& kind) {
    Answer expected;
    try {
        AnyRecord rewritten;
        Rewrite(kind, fdn, NS_UTIL::Surroundings::OfSystem(), rewritten, expected.text);
        expected.isWritten = true;
    } catch (const BadRecord& bad) {
        expected.text = bad.what();
    }
    RecordLine line;
    RecordRow csv(HeaderOf(OutputFormat::CSV), ',');
    RecordRow tsv(HeaderOf(OutputFormat::TSV), '\t');
    const std::array<std::pair<OutputFormat, RecordReader*>, 3> ways{
        {{OutputFormat::JSONL, &line}, {OutputFormat::CSV, &csv}, {OutputFormat::TSV, &tsv}}};
    for (const auto& [format, reader] : ways) {
        TextBuffer decoded;
        MakeFormat({format, AllKinds()}, NS_UTIL::Surroundings::OfSystem())->Write(fdn, kind, decoded);
        const std::string_view text = decoded.View().substr(0, decoded.GetSize() - 1);
        ExpectEqual(Encode(*reader, text), expected, "the encoding", text);
        ExpectEqual(reader->Fdn(), fdn, "the identifier in the line", text);
    }
}

// Any text is a row, or a line of column names: one identifier, or a reason why not.
void ReadAsRow(std::string_view line) {
    for (const auto& [format, separator] : {std::pair(OutputFormat::CSV, ','), std::pair(OutputFormat::TSV, '\t')}) {
        RecordRow reader(HeaderOf(format), separator, FindKindByType("NEIndex"));
        const Answer answer = Encode(reader, line);
        ExpectEqual(Encode(reader, line), answer, "the second encoding of a row", line);
        try {
            static_cast<void>(RecordRow(line, separator, FindKindByType("NEIndex")));
        } catch (const BadRecord&) {
            continue;
        }
        ExpectEqual(FindSeparator(line).has_value(), true, "whether column names are recognized", line);
    }
}

// A record that keeps its text is never written as text that would be read as another record. The text of a pseudo-wire
// is the part after its NE.
bool KeepsItsText(const Kind& kind) {
    return FindField(kind, "container") != nullptr || (FindField(kind, "resId") != nullptr && kind.type != "PWIndex");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const NS_TEST::ConversionSurroundings surroundings(NS_TEST::CONVERSION_PROFILES[0]);
    const std::string_view line = NS_FUZZ::ToText(data, size);
    ReadAsRow(line);
    RecordLine record;
    const Answer answer = Encode(record, line);
    ExpectEqual(Encode(record, line), answer, "the second encoding", line);
    if (!answer.isWritten) {
        return 0;
    }
    const std::string& fdn = answer.text;
    ExpectEqual(fdn.find_first_of(std::string_view("\0\n\r", 3)), std::string::npos, "the line end in what is written",
                line);
    const Kind& kind = record.GetKind();
    if (KeepsItsText(kind)) {
        std::string canonical;
        AnyRecord rewritten;
        Rewrite(kind, fdn, NS_UTIL::Surroundings::OfSystem(), rewritten, canonical);
        ExpectEqual(canonical, fdn, "what is read back and written", line);
    }
    CompareWays(fdn, kind);
    return 0;
}
