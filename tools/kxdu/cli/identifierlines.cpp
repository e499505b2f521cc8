#include "cli/identifierlines.h"

#include <algorithm>
#include <string>

#include "catalogue/kinds.h"
#include "catalogue/levelcheck.h"
#include "cli/verb.h"
#include "formats/recordrow.h"
#include "lines/failure.h"

namespace NS_KX::NS_KXDU {

void RefuseOtherThanIdentifiers(std::string_view line) {
    const std::string_view text = line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
    const auto refuse = [](const char* complaint) { throw Failure(Cause::INPUT, complaint); };
    if (text.starts_with('{') || text.starts_with('[')) {
        refuse(
            "this is JSON, not an identifier; kxdu encode reads records as decode writes them, and jq -r takes "
            "identifiers out of other JSON");
    }
    if (text.starts_with('"')) {
        refuse(
            "this is CSV with quotes, not an identifier; write the column of identifiers to a file of its own without "
            "quotes (where it is the only column: tr -d '\"')");
    }
    if (text.starts_with("fdn,type,") || text.starts_with("fdn\ttype\t")) {
        refuse("this is a table as kxdu decode writes it, not an identifier; its first column holds the identifiers");
    }
    // A line of one column is rejected like any other, and the lines after it are read.
    if (const auto separator = FindSeparator(text); separator && text.find(*separator) != std::string_view::npos) {
        refuse(
            "this is a line of column names, not an identifier; kxdu encode reads records, and kxdu get takes columns "
            "of identifiers");
    }
    if (text.starts_with('<')) {
        refuse("this is XML or HTML, not an identifier; take the identifiers out of it, one per line");
    }
}

const Kind* KindOf(std::string_view line, LineResult& result) {
    const Kind* const kind = FindKind(line);
    if (kind == nullptr) {
        result.Report(OfNoKind(line));
    }
    return kind;
}

void AddStrictTags(Verb& verb, bool& areTagsStrict) {
    verb.AddFlag("--strict-tags", areTagsStrict, "Reject lines with tags that are unknown, repeated or out of place");
}

void TagWatch::Describe(LineWork& work) {
    work.notice = "unknown tags or levels out of place";
    work.noticeAdvice = "see kxdu check, or reject them by --strict-tags";
}

bool TagWatch::AcceptsOdd(std::string_view line, LineResult& result) const {
    const auto problem = [line] { return FindTagProblem(line).value(); };
    if (m_isStrict) {
        const Problem found = problem();
        result.Report(found.text, found.column);
        return false;
    }
    result.Notice([&] {
        const Problem found = problem();
        return std::to_string(found.column) + ": " + found.text;
    });
    return true;
}

}  // namespace NS_KX::NS_KXDU
