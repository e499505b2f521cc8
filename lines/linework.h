/// What a run over lines is asked to do, and what it says of itself afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lines/fileinuse.h"
#include "lines/lineresult.h"

namespace NS_KX {

/// What a run shows of its findings.
enum class FindingsShown {
    ALL,      ///< each of them, and the summary if there is one
    SUMMARY,  ///< only the summary, as the output
    NONE,
};

/// How messages name the program and its options.
struct MessageNames {
    std::string_view program;        ///< messages begin with it
    std::string_view outputOption;   ///< sets `BulkOptions::output`
    std::string_view rejectsOption;  ///< sets `BulkOptions::rejects`

    /// What a message begins with.
    [[nodiscard]] std::string Prefix() const { return std::string(program) + ": "; }
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
    MessageNames names;
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
    std::uint64_t linesWithFindings = 0;
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
    std::string_view finding = "rejected";  ///< the summary's word for a line with a finding: "3 rejected in 7 lines"
    /// The word for a finding, if a line may have several: "problem", for "3 problems in 2 of 7 lines".
    std::string_view oneFinding;
    std::string_view notice;            ///< what lines with a notice have, for the summary
    std::string_view noticeAdvice;      ///< what to do about them
    std::vector<FileInUse> filesInUse;  ///< files that the run needs besides the inputs

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

}  // namespace NS_KX
