/// Bulk work: converts every line of the inputs on all cores and writes the results in the order of the lines. Memory
/// does not grow with the inputs.
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

/// What a run shows of its findings.
enum class FindingsShown {
    ALL,      ///< each of them, and the summary if there is one
    SUMMARY,  ///< only the summary, as the output
    NONE,
};

/// What the user chose for bulk work.
struct BulkOptions {
    std::vector<std::string> files;  ///< none: standard input
    std::string output;              ///< empty: standard output
    bool isAppending = false;        ///< appends to the output file, instead of replacing it when it is complete
    std::string aside;               ///< file to which lines are appended that the verb puts aside; empty: nowhere
    std::string rejects;             ///< empty: standard error
    unsigned jobs = 0;               ///< threads; 0: one for each core
    bool isStrict = false;           ///< the first finding ends the run
    bool isProgressHidden = false;   ///< no progress bar, even if standard error is a terminal
    FindingsShown findings = FindingsShown::ALL;
};

/// Counts that a converter uses as it likes.
using Tallies = std::array<std::uint64_t, 4>;

/// Where a converter puts what it makes of the lines of a block.
class LineResult {
public:
    /// The output. A line may add at most `MOST_GROWTH` times its size and a few hundred bytes to output and reports
    /// together; use `Room` for more.
    TextBuffer output;
    static constexpr std::size_t MOST_GROWTH = 20;

    /// Appends room for `size` bytes to the output; the caller fills it at once. If there is no room now, throws an
    /// exception that `Convert` must let pass; the line is then converted again.
    char* Room(std::size_t size);

    /// What goes to the file of lines put aside.
    TextBuffer aside;

    /// Reports something about the current line, as "file:line: reason", or "file:line:column: reason" when `column`
    /// (from 1) is not 0. `reason` has no line end.
    void Report(std::string_view reason, std::size_t column = 0);

    /// Counts the current line as one that is converted although it looks wrong. `describe()` says what is wrong, as
    /// "column: text"; it is called for the first such line of a block only.
    template <class Describe>
    void Notice(Describe describe) {
        if (m_notices++ == 0) {
            m_firstNotice = std::to_string(m_line) + ":" + describe();
        }
    }

    /// Adds one to a count. `LineCounts` has the sums over all lines that were written.
    void Count(std::size_t tally) { ++m_tallies.at(tally); }

    /// Whether the current line is the first one of its file.
    [[nodiscard]] bool IsFirstLine() const noexcept { return m_line == 1; }

    /// Where something about the current line is, as `Report` writes it: "file:line" or "file:line:column".
    [[nodiscard]] std::string PlaceOf(std::size_t column) const;

    /// The first line of the current line's file, without its line end; the same object for all lines of the file. Null
    /// unless `LineWork::areHeadsKept`; empty if the first line was too long.
    [[nodiscard]] const std::shared_ptr<const std::string>& Head() const noexcept { return m_head; }

private:
    friend class LineRun;

    // Thrown if a line has no room before all earlier lines are written.
    struct Full {};

    // Where the additions of a line begin, to take them back.
    struct Mark {
        std::size_t output;
        std::size_t aside;
        std::size_t report;
        std::size_t findings;
        std::size_t notices;
        Tallies tallies;
    };

    void Begin(std::string_view inputName, std::size_t firstLine, std::size_t mostSize);
    [[nodiscard]] std::size_t Size() const { return output.GetSize() + aside.GetSize() + m_report.GetSize(); }
    [[nodiscard]] Mark MarkLine() const;
    void TakeBack(const Mark& mark);
    void Release();

    std::size_t m_mostSize = 0;
    std::string_view m_inputName;
    std::shared_ptr<const std::string> m_head;
    TextBuffer m_report;  // without the input's name, which may be long
    std::size_t m_firstLine = 0;
    std::size_t m_line = 0;
    std::size_t m_findings = 0;
    std::size_t m_outputBeforeFirst = 0;
    std::size_t m_asideBeforeFirst = 0;
    std::size_t m_firstFindingEnd = 0;
    std::size_t m_firstFindingLine = 0;
    std::size_t m_notices = 0;
    std::string m_firstNotice;
    Tallies m_tallies{};
};

/// Converts lines. Each object belongs to one thread at a time.
class LineConverter {
public:
    virtual ~LineConverter() = default;
    /// `line` has no line end, is not empty, not longer than `LONGEST_LINE`, and has no NUL byte. In verbatim work it
    /// may be empty, hold NUL bytes, and end in a carriage return.
    virtual void Convert(std::string_view line, LineResult& result) = 0;
    /// Called instead for a line that is no text, or too long. `reason` is a literal; `column` is 0 if the whole line
    /// is meant. By default, reports the line.
    virtual void Refuse(std::string_view reason, std::size_t column, LineResult& result) {
        result.Report(reason, column);
    }
};

/// How a run went. Counts only lines whose results were written completely.
struct LineCounts {
    std::uint64_t lines = 0;
    std::uint64_t findings = 0;
    std::uint64_t notices = 0;
    std::string firstNotice;  ///< "file:line:column: text"; empty if there is none
    Tallies tallies{};
    bool isFound = false;    ///< there was a finding, maybe in a line that could not be written
    bool isStopped = false;  ///< ended at the first finding, as asked
};

/// What a verb does with lines.
struct LineWork {
    std::function<std::unique_ptr<LineConverter>()> makeConverter;  ///< called once for each block that is in flight
    std::string header;                                             ///< the output begins with it
    bool mustBeUtf8 = true;                 ///< rejects lines that are not, or whose output is not
    bool isVerbatim = false;                ///< the converter gets every line that is not too long, just as it is
    bool areHeadsKept = false;              ///< converters ask for `LineResult::Head`
    bool isReportTheOutput = false;         ///< findings go to the output: the user asked for them
    bool isReportColoured = false;          ///< colours where a finding is
    std::string_view finding = "rejected";  ///< the summary's word for a line with a finding
    std::string_view notice;                ///< what lines with a notice have, for the summary
    std::string_view noticeAdvice;          ///< what to do about them
    std::vector<FileInUse> filesInUse;      ///< files that the run needs besides the inputs

    /// Takes what a converter has gathered from the lines of a block, and leaves the converter empty for the next one.
    /// Called after the results of these lines are written, in the order of the lines, one call at a time.
    std::function<void(LineConverter&)> takeGathered;

    /// Asked after some lines were read, before they are converted. If it returns true, `pause` is called once all
    /// earlier lines are written, while no converter runs.
    std::function<bool()> isPauseDue;
    std::function<void()> pause;

    /// Called once everything is open, before the first line is read.
    std::function<void()> ready;
    /// Called after the results of the next lines were written, with the number of these lines.
    std::function<void(std::size_t)> written;

    /// Makes the summary, with its line end, for a run that nothing stopped; replaces the usual one.
    std::function<std::string(const LineCounts&)> summarize;
};

/// Runs the work, and returns how it went. Throws `Failure` as its parts do, and with `Cause::USAGE` if an output would
/// replace a file that is read or written, or if an input is plainly no text. Verbatim work takes any input.
///
/// An exception from a converter ends the run, and so does an input that cannot be read. Standard output has received
/// the results of all earlier lines by then; a named output file does not appear. If an input fails in the middle of a
/// line, the beginning of that line is not converted. A `Failure` of a converter gets "file:line: " before its text.
///
/// On standard error, findings of the same kind are shown a few times; the rest is counted.
///
/// The file of the rejected lines appears however the run ends, unless a signal ends it or the file cannot be written.
LineCounts RunLines(const BulkOptions& options, const LineWork& work);

}  // namespace NS_KX
