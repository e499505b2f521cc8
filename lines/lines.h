/// Bulk work: every line of the inputs through a converter, on all cores, in the order of the lines, and in little
/// memory whatever the inputs' size.
#pragma once

#include <array>
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

/// Counts of a converter's own, by whatever it counts.
using Tallies = std::array<std::uint64_t, 3>;

/// Where a converter puts what it makes of the lines of a block.
class LineResult {
public:
    /// What goes to the output. A line appends here, and reports, at most `MOST_GROWTH` times its size and a few
    /// hundred bytes; use `Room` for what may be more.
    TextBuffer output;
    static constexpr std::size_t MOST_GROWTH = 20;

    /// Appends room for `size` bytes to the output, which the caller fills at once. The line may be converted anew when
    /// there is no such room now: this then ends `Convert` by an exception, which the caller lets pass.
    char* Room(std::size_t size);

    /// Reports something about the current line, as "file:line: reason", or "file:line:column: reason" when `column`
    /// (from 1) is not 0. `reason` has no line end.
    void Report(std::string_view reason, std::size_t column = 0);

    /// Adds one to a count. `LineCounts` has the sums over all lines that were written.
    void Count(std::size_t tally) { ++m_tallies.at(tally); }

    /// Whether the current line is the first one of its file.
    [[nodiscard]] bool IsFirstLine() const noexcept { return m_line == 1; }

private:
    friend class LineRun;

    // Thrown where there is no room for a line until all before it are written.
    struct Full {};

    // What a line has added so far, to be taken back.
    struct Mark {
        std::size_t output;
        std::size_t report;
        std::size_t findings;
        Tallies tallies;
    };

    void Begin(std::size_t firstLine, std::size_t mostSize);
    [[nodiscard]] std::size_t Size() const { return output.GetSize() + m_report.GetSize(); }
    [[nodiscard]] Mark MarkLine() const;
    void TakeBack(const Mark& mark);
    void Release();

    std::size_t m_mostSize = 0;
    TextBuffer m_report;  // without the input's name, which may be long
    std::size_t m_firstLine = 0;
    std::size_t m_line = 0;
    std::size_t m_findings = 0;
    std::size_t m_outputBeforeFirst = 0;
    std::size_t m_firstFindingEnd = 0;
    std::size_t m_firstFindingLine = 0;
    Tallies m_tallies{};
};

/// Makes something of lines. Each belongs to one thread at a time.
class LineConverter {
public:
    virtual ~LineConverter() = default;
    /// `line` has no line end, is not empty, not longer than `LONGEST_LINE`, and has no NUL byte. Of verbatim work it
    /// may be empty, and have NUL bytes and a carriage return at its end.
    virtual void Convert(std::string_view line, LineResult& result) = 0;
};

/// How a run went, of all lines whose results were written whole.
struct LineCounts {
    std::uint64_t lines = 0;
    std::uint64_t findings = 0;
    Tallies tallies{};
    bool isFound = false;    ///< there was a finding, maybe in what could not be written
    bool isStopped = false;  ///< ended at the first finding, as asked
};

/// What a verb does with lines.
struct LineWork {
    std::function<std::unique_ptr<LineConverter>()> makeConverter;  ///< called once for each block that is in flight
    std::string header;                                             ///< the output begins with it
    bool mustBeUtf8 = true;                 ///< lines that are not, or whose output is not, are rejected
    bool isVerbatim = false;                ///< every line is converted that is not too long, just as it is
    bool isReportTheOutput = false;         ///< findings are what the user asked for: they go to the output
    std::string_view finding = "rejected";  ///< a line with a finding, in the summary
    std::vector<FileInUse> filesInUse;      ///< what the run needs besides the inputs

    /// The last line on standard error of a run that nothing stopped, with its end, in place of the usual one.
    std::function<std::string(const LineCounts&)> summarize;
};

/// Runs the work, and says how it went. Throws `Failure` as the parts do, and with `Cause::USAGE` when one file would
/// be written over another that is read or written.
///
/// An exception from a converter, or an input that cannot be read, ends the run. All earlier lines have been converted
/// and written then if the output is standard output; a named output file does not appear. If an input fails in the
/// middle of a line, the beginning of that line is not converted. A `Failure` of a converter gets "file:line: " in
/// front of its text.
///
/// The file of the rejected lines appears however the run ends, unless a signal ends it or it cannot be written itself.
LineCounts RunLines(const BulkOptions& options, const LineWork& work);

}  // namespace NS_KX
