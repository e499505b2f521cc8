/// Bulk work: every line of the inputs through a converter, on all cores, in the order of the lines, and in little
/// memory whatever the inputs' size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lines/fileinuse.h"
#include "text/textbuffer.h"

namespace NS_KX {

/// What the user chose for bulk work.
struct BulkOptions {
    std::vector<std::string> files;  ///< none: standard input
    std::string output;              ///< empty: standard output
    std::string rejects;             ///< empty: standard error
    unsigned jobs = 0;               ///< threads; 0: one for each core
    bool isStrict = false;           ///< the first finding ends the run
    bool isProgressHidden = false;   ///< no progress bar, where standard error is a terminal
};

/// Where a converter puts what it makes of the lines of a block.
class LineResult {
public:
    /// What goes to the output.
    TextBuffer output;

    /// Reports something about the current line, as "file:line: reason", or "file:line:column: reason" when `column`
    /// (from 1) is not 0.
    void Report(std::string_view reason, std::size_t column = 0);

    /// Whether the current line is the first one of its file.
    [[nodiscard]] bool IsFirstLine() const noexcept { return m_line == 1; }

private:
    friend class LineRun;

    void Begin(std::string_view inputName, std::size_t firstLine);
    [[nodiscard]] std::string Place() const;

    TextBuffer m_report;
    std::string_view m_inputName;
    std::size_t m_line = 0;
    std::size_t m_findings = 0;
    std::size_t m_outputBeforeFirst = 0;
    std::size_t m_firstFindingEnd = 0;
    std::size_t m_firstFindingLine = 0;
};

/// Makes something of lines. Each belongs to one thread at a time.
class LineConverter {
public:
    virtual ~LineConverter() = default;
    /// `line` has no line end, is not empty, not longer than `LONGEST_LINE`, and has no NUL byte. Of verbatim work it
    /// may be empty, and have NUL bytes and a carriage return at its end.
    virtual void Convert(std::string_view line, LineResult& result) = 0;
};

/// How a run went.
struct LineCounts {
    std::uint64_t lines = 0;
    std::uint64_t findings = 0;
    bool isStopped = false;  ///< --strict ended it at a finding
};

/// What a verb does with lines.
struct LineWork {
    std::function<std::unique_ptr<LineConverter>()> makeConverter;  ///< called once for each block that is in flight
    std::string header;                                             ///< the output begins with it
    bool mustBeUtf8 = true;                                         ///< lines that are not are rejected
    bool isVerbatim = false;                ///< every line is converted that is not too long, just as it is
    bool isReportTheOutput = false;         ///< findings are what the user asked for: they go to the output
    std::string_view finding = "rejected";  ///< a line with a finding, in the summary
    std::vector<FileInUse> filesInUse;      ///< what the run needs besides the inputs

    /// The last line on standard error of a run that nothing stopped, with its end, in place of the usual one; called
    /// when the converters are gone.
    std::function<std::string(const LineCounts&)> summarize;
};

/// Runs the work, and says how it went. Throws `Failure` as the parts do, and with
/// `Cause::USAGE` when one file would be written over another that is read or written.
///
/// An exception from a converter, or an input that cannot be read, ends the run. All earlier lines have been converted
/// and written then if the output is standard output; a named output file does not appear. Of an input that fails in
/// the middle of a line, the beginning of that line is not converted. A `Failure` of a converter gets "file:line: " in
/// front of its text.
///
/// The file of the rejected lines appears however the run ends, unless a signal ends it or it cannot be written itself.
LineCounts RunLines(const BulkOptions& options, const LineWork& work);

}  // namespace NS_KX
