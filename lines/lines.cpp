#include "lines/lines.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <oneapi/tbb/concurrent_queue.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <unistd.h>

#include "lines/blockreader.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "lines/otherfile.h"
#include "lines/output.h"
#include "lines/progress.h"
#include "lines/repetitions.h"
#include "lines/terminal.h"
#include "text/text.h"

namespace NS_KX {

namespace {

constexpr std::string_view LINE_TOO_LONG = "the line is longer than 1 MiB";
constexpr std::string_view PLACE_COLOUR = "\x1b[36m";
constexpr std::string_view RESET = "\x1b[0m";

// For the blocks in flight and their results. The output's buffer may take half as much again.
constexpr std::size_t MEMORY = std::size_t{24} << 20U;
// Larger blocks fall out of the processor's caches.
constexpr std::size_t LARGEST_BLOCK = std::size_t{256} << 10U;
constexpr std::size_t SMALLEST_BLOCK = std::size_t{2} << 10U;

std::size_t BlockSize(std::size_t inFlight) {
    return std::clamp(MEMORY / LineResult::MOST_GROWTH / inFlight, SMALLEST_BLOCK, LARGEST_BLOCK);
}

// A block in flight, with everything that belongs to it.
struct Piece {
    InputBlock input;
    std::string_view rest;  // of the block's text: lines that are not converted yet
    LineResult result;
    std::unique_ptr<LineConverter> converter;
    std::exception_ptr failure;  // what the converter threw
};

std::size_t Threads(unsigned jobs) {
    return jobs != 0 ? jobs : static_cast<std::size_t>(tbb::info::default_concurrency());
}

std::string Lines(std::uint64_t count) {
    return std::to_string(count) + (count == 1 ? " line" : " lines");
}

std::string Summary(const LineWork& work, const LineCounts& counts) {
    return std::to_string(counts.findings) + " " + std::string(work.finding) + " in " + Lines(counts.lines) +
           (counts.isStopped ? ", and stopped there\n" : "\n");
}

std::string MessageOfNotices(const LineWork& work, const LineCounts& counts) {
    if (counts.notices == 0) {
        return {};
    }
    return "kxdu: " + Lines(counts.notices) + (counts.notices == 1 ? " has " : " have ") + std::string(work.notice) +
           ", first at " + counts.firstNotice + "; " + std::string(work.noticeAdvice) + "\n";
}

// What a run says at its end.
std::string ClosingMessage(const LineWork& work, const LineCounts& counts) {
    if (work.summarize && !counts.isStopped) {
        return work.summarize(counts);
    }
    return MessageOfNotices(work, counts) + (counts.findings == 0 ? std::string() : "kxdu: " + Summary(work, counts));
}

void RefuseAppending(const std::vector<FileInUse>& filesInUse, const std::string& target, std::string_view lines) {
    for (const auto& [name, role] : filesInUse) {
        if (IsSameFile(target, name)) {
            throw Failure(Cause::USAGE, std::string(target)
                                            .append(": is the ")
                                            .append(role)
                                            .append(", so ")
                                            .append(lines)
                                            .append(" cannot be appended to it"));
        }
    }
}

// The output may replace an input: it takes the input's place after everything is read. The rejected lines may not, and
// no input may grow while it is read. None of the outputs may change the other files that the run needs.
void RefuseLoss(const BulkOptions& options, const LineWork& work) {
    std::vector<FileInUse> filesInUse = work.filesInUse;
    const bool areReportsMessages = options.rejects.empty() && !work.isReportTheOutput;
    RefuseReplacing(filesInUse, options.output);
    const auto nameOf = [](const std::string& file, const char* stream) {
        return file.empty() || file == "-" ? std::string(stream) : file;
    };
    const std::string output = nameOf(options.output, "/dev/stdout");
    std::vector<FileInUse> inputs;
    const std::vector<std::string> standardInput{"-"};
    for (const std::string& file : options.files.empty() ? standardInput : options.files) {
        const std::string input = nameOf(file, "/dev/stdin");
        inputs.push_back({input, "input"});
        const std::string shown = file == "-" ? "standard input" : file;
        if (output == "/dev/stdout" && IsSameFile(output, input)) {
            throw Failure(Cause::USAGE, shown + ": is standard output too; write to it with -o");
        }
        if (areReportsMessages && IsSameFile("/dev/stderr", input)) {
            throw Failure(Cause::USAGE, shown + ": is standard error too, where the rejected lines are reported");
        }
    }
    if (options.isAppending) {
        RefuseAppending(inputs, output, "the output");
    }
    filesInUse.push_back({output, "output"});
    filesInUse.insert(filesInUse.end(), inputs.begin(), inputs.end());
    if (!options.aside.empty()) {
        if (nameOf(options.aside, "/dev/stdout") == output) {
            throw Failure(Cause::USAGE,
                          options.aside + ": is the output, so the lines put aside cannot be appended to it");
        }
        RefuseAppending(filesInUse, options.aside, "the lines put aside");
        filesInUse.push_back({options.aside, "file of the lines put aside"});
    }
    if (!options.rejects.empty() && nameOf(options.rejects, "/dev/stdout") == output && output == "/dev/stdout") {
        throw Failure(Cause::USAGE, "--rejects: the output goes to standard output too; name a file for one of them");
    }
    RefuseReplacing(filesInUse, options.rejects, "the rejected lines");
}

}  // namespace

// ---- LineResult -----------------------------------------------------------------------------------------------------

void LineResult::Begin(std::string_view inputName, std::size_t firstLine, std::size_t mostSize) {
    output.Clear();
    aside.Clear();
    m_report.Clear();
    m_mostSize = mostSize;
    m_inputName = inputName;
    m_firstLine = firstLine;
    m_line = firstLine;
    m_findings = 0;
    m_notices = 0;
    m_tallies = {};
}

LineResult::Mark LineResult::MarkLine() const {
    return {output.GetSize(), aside.GetSize(), m_report.GetSize(), m_findings, m_notices, m_tallies};
}

void LineResult::TakeBack(const Mark& mark) {
    output.Pop(output.GetSize() - mark.output);
    aside.Pop(aside.GetSize() - mark.aside);
    m_report.Pop(m_report.GetSize() - mark.report);
    m_findings = mark.findings;
    m_notices = mark.notices;
    m_tallies = mark.tallies;
}

void LineResult::Release() {
    output = TextBuffer();
    aside = TextBuffer();
    m_report = TextBuffer();
}

char* LineResult::Room(std::size_t size) {
    if (Size() + size > m_mostSize) {
        throw Full();
    }
    return output.Push(size);
}

std::string LineResult::PlaceOf(std::size_t column) const {
    std::string place(m_inputName);
    place.append(":").append(std::to_string(m_line));
    return column != 0 ? place.append(":").append(std::to_string(column)) : place;
}

void LineResult::Report(std::string_view reason, std::size_t column) {
    m_report.Put(':');
    AppendNumber(m_report, m_line);
    if (column != 0) {
        m_report.Put(':');
        AppendNumber(m_report, column);
    }
    Append(m_report, ": ");
    Append(m_report, reason);
    m_report.Put('\n');
    if (m_findings++ == 0) {
        m_firstFindingLine = m_line;
        m_outputBeforeFirst = output.GetSize();
        m_asideBeforeFirst = aside.GetSize();
        m_firstFindingEnd = m_report.GetSize();
    }
}

// ---- The run --------------------------------------------------------------------------------------------------------

class LineRun {
public:
    LineRun(const BulkOptions& options, const LineWork& work)
        : m_options(options),
          m_work(work),
          // One for each thread, and some that are read or written; more would fall out of the processor's caches.
          m_inFlight(Threads(options.jobs) * 3 / 2 + 1),
          m_blockSize(BlockSize(m_inFlight)),
          m_reader(options.files, m_blockSize),
          m_output(options.output, options.isAppending ? Output::Mode::APPEND : Output::Mode::REPLACE),
          m_progress(IsProgressShown(), m_reader.TotalBytes()) {
        if (work.areHeadsKept) {
            m_reader.KeepHeads();
        }
        if (!options.rejects.empty()) {
            m_rejects.emplace(options.rejects);
        }
        if (!options.aside.empty()) {
            m_aside.emplace(options.aside, Output::Mode::APPEND);
        }
        for (std::size_t piece = 0; piece < m_inFlight; ++piece) {
            m_pieces.push_back(NewPiece());
            m_free.push(m_pieces.back().get());
        }
    }

    LineCounts Run() {
        try {
            RunAll();
        } catch (const ClosedPipe&) {
            return End();
        } catch (...) {
            EndAfterFailure();
            throw;
        }
        return End();
    }

private:
    std::unique_ptr<Piece> NewPiece() const {
        auto piece = std::make_unique<Piece>();
        piece->converter = m_work.makeConverter();
        return piece;
    }

    [[nodiscard]] bool IsProgressShown() const {
        return !m_options.isProgressHidden && IsCapableTerminal(STDERR_FILENO) && !m_output.IsTerminal();
    }

    void RunAll() {
        const tbb::global_control threads(tbb::global_control::max_allowed_parallelism, Threads(m_options.jobs));
        m_output.Write(m_work.header);
        if (m_work.ready) {
            m_work.ready();
        }
        while (!m_isStopped && !m_isInputAtEnd) {
            RunPipeline();
            RunLargePiece();
            Pause();
            if (m_readFailure && !m_isStopped) {
                std::rethrow_exception(m_readFailure);
            }
        }
        if (m_options.findings == FindingsShown::SUMMARY) {
            m_output.Write(Summary(m_work, m_counts));
        }
        if (!m_isStopped || m_work.isReportTheOutput) {  // a stopped run leaves no incomplete output
            m_output.Complete();
        }
    }

    void RunPipeline() {
        tbb::parallel_pipeline(
            m_inFlight,
            tbb::make_filter<void, Piece*>(tbb::filter_mode::serial_in_order, [this](tbb::flow_control& flow) {
                return ReadPiece(flow);
            }) & tbb::make_filter<Piece*, Piece*>(tbb::filter_mode::parallel, [this](Piece* piece) {
                BeginPiece(*piece);
                return piece;
            }) & tbb::make_filter<Piece*, void>(tbb::filter_mode::serial_in_order, [this](Piece* piece) {
                WritePiece(*piece);
                m_free.push(piece);
            }));
    }

    Piece* ReadPiece(tbb::flow_control& flow) {
        Piece* const piece = m_isStopped ? nullptr : NextPiece();
        if (piece == nullptr) {
            flow.stop();
        } else if (piece->input.size > m_blockSize) {
            m_large = NewPiece();
            std::swap(m_large->input, piece->input);
            m_free.push(piece);
            flow.stop();
            return nullptr;
        }
        return piece;
    }

    // Null at the end of the input, and if the pipeline must end before the lines that were read.
    Piece* NextPiece() {
        if (m_waiting != nullptr) {
            return std::exchange(m_waiting, nullptr);
        }
        Piece* piece = nullptr;
        if (!m_free.try_pop(piece)) {
            return nullptr;
        }
        if (!ReadBlock(piece->input)) {
            m_isInputAtEnd = true;
            m_free.push(piece);
            return nullptr;
        }
        if (m_work.isPauseDue && m_work.isPauseDue()) {
            m_waiting = piece;
            return nullptr;
        }
        return piece;
    }

    // The pipeline is empty, so no converter runs.
    void Pause() {
        if (m_waiting != nullptr && !m_isStopped) {
            m_progress.Clear();
            m_work.pause();
        }
    }

    // An exception here would cancel the pipeline, and the lines read before would be lost.
    bool ReadBlock(InputBlock& block) {
        try {
            const bool isThere = m_reader.Next(block);
            if (isThere && block.firstLine == 1 && !m_work.isVerbatim) {
                RefuseOtherFile(block.Text(), std::string(block.inputName));
            }
            return isThere;
        } catch (...) {
            m_readFailure = std::current_exception();
            return false;
        }
    }

    // Only one block with very long lines is held at a time, and only after all others are written.
    void RunLargePiece() {
        if (m_large && !m_isStopped) {
            BeginPiece(*m_large);
            WritePiece(*m_large);
        }
        m_large.reset();
    }

    void BeginPiece(Piece& piece) const {
        LineResult& result = piece.result;
        result.Begin(piece.input.inputName, piece.input.firstLine, m_mostResult);
        result.m_head = piece.input.head;
        piece.rest = piece.input.Text();
        if (piece.input.isTooLongLine) {
            piece.converter->Refuse(LINE_TOO_LONG, 0, result);
            ++result.m_line;
            return;
        }
        ConvertPiece(piece);
    }

    // Converts lines until there are no more, or until their results are as large as one piece allows.
    void ConvertPiece(Piece& piece) const {
        LineResult& result = piece.result;
        // Checked once for each block instead of for each line.
        const bool hasNul = std::memchr(piece.rest.data(), 0, piece.rest.size()) != nullptr;
        const bool mayBeInvalid = m_work.mustBeUtf8 && !m_work.isVerbatim && !IsAscii(piece.rest);
        while (!piece.rest.empty() && result.Size() < m_mostResult) {
            const auto end = piece.rest.find('\n');
            std::string_view line = piece.rest.substr(0, end);
            if (!m_work.isVerbatim && end != std::string_view::npos && line.ends_with('\r')) {
                line.remove_suffix(1);  // belongs to the line end
            }
            const LineResult::Mark mark = result.MarkLine();
            try {
                ConvertLine(line, hasNul, mayBeInvalid, piece);
            } catch (const LineResult::Full&) {
                result.TakeBack(mark);
                return;
            } catch (const Failure& failure) {
                const std::string place = std::string(piece.input.inputName) + ":" + std::to_string(result.m_line);
                piece.failure = std::make_exception_ptr(Failure(failure.GetCause(), place + ": " + failure.what()));
                return;
            } catch (...) {
                piece.failure = std::current_exception();
                return;
            }
            ++result.m_line;
            piece.rest.remove_prefix(end == std::string_view::npos ? piece.rest.size() : end + 1);
        }
    }

    void ConvertLine(std::string_view line, bool hasNul, bool mayBeInvalid, Piece& piece) const {
        LineResult& result = piece.result;
        const bool isChecked = mayBeInvalid && !IsAscii(line);
        if (line.size() > LONGEST_LINE) {
            piece.converter->Refuse(LINE_TOO_LONG, 0, result);
        } else if (m_work.isVerbatim || IsText(line, hasNul, isChecked, piece)) {
            const std::size_t before = result.output.GetSize();
            piece.converter->Convert(line, result);
            if (isChecked) {
                RefuseInvalidOutput(before, result);
            }
        }
    }

    // Whether the line can be converted; refuses it if not. Looks at it only where the block gives cause to.
    static bool IsText(std::string_view line, bool hasNul, bool isChecked, Piece& piece) {
        const auto flaw = line.empty() || hasNul || isChecked ? FindFlaw(line, !isChecked) : std::nullopt;
        if (flaw) {
            piece.converter->Refuse(flaw->reason, flaw->column, piece.result);
        }
        return !flaw;
    }

    // A reader of the library may cut a field inside a character. ASCII input needs no such check.
    static void RefuseInvalidOutput(std::size_t before, LineResult& result) {
        const std::string_view made = result.output.View().substr(before);
        if (FindInvalidUtf8(made) != made.size()) {
            result.output.Pop(made.size());
            result.Report("cannot be written as UTF-8: a field of what is read begins or ends inside a character");
        }
    }

    // Writes the results of a piece, and continues with the lines that had no room before.
    void WritePiece(Piece& piece) {
        while (!m_isStopped) {
            WriteResult(piece);
            if (m_work.takeGathered) {
                m_work.takeGathered(*piece.converter);
            }
            if (piece.failure) {
                std::rethrow_exception(piece.failure);
            }
            if (piece.rest.empty()) {
                break;
            }
            piece.result.Begin(piece.input.inputName, piece.result.m_line, std::numeric_limits<std::size_t>::max());
            ConvertPiece(piece);
        }
        if (piece.result.Size() > m_mostResult) {
            piece.result.Release();  // many pieces wait with their buffers
        }
        m_progress.Update(piece.input.bytesRead, m_counts.lines);
    }

    void WriteResult(const Piece& piece) {
        const LineResult& result = piece.result;
        const std::string_view name = piece.input.inputName;
        m_counts.isFound = m_counts.isFound || result.m_findings != 0;
        m_isStopped = m_options.isStrict && result.m_findings != 0;
        m_counts.isStopped = m_isStopped;
        if (m_isStopped) {
            m_output.Write(result.output.View().substr(0, result.m_outputBeforeFirst));
            WriteAside(result.aside.View().substr(0, result.m_asideBeforeFirst));
            WriteReport(result.m_report.View().substr(0, result.m_firstFindingEnd), name);
            m_counts.findings += 1;
            m_counts.lines += result.m_firstFindingLine + 1 - result.m_firstLine;
            return;
        }
        m_output.Write(result.output.View());
        WriteAside(result.aside.View());
        WriteReport(result.m_report.View(), name);
        m_counts.findings += result.m_findings;
        m_counts.lines += result.m_line - result.m_firstLine;
        if (result.m_notices != 0 && m_counts.notices == 0) {
            m_counts.firstNotice = std::string(name) + ":" + result.m_firstNotice;
        }
        m_counts.notices += result.m_notices;
        for (std::size_t tally = 0; tally < result.m_tallies.size(); ++tally) {
            m_counts.tallies[tally] += result.m_tallies[tally];
        }
        if (m_work.written) {
            m_work.written(result.m_line - result.m_firstLine);
        }
    }

    void WriteAside(std::string_view lines) {
        if (m_aside) {
            m_aside->Write(lines);
        }
    }

    // Puts the input's name before each line of a report. If the name is long, holds only a few lines at a time.
    void WriteReport(std::string_view report, std::string_view inputName) {
        constexpr std::size_t MOST = std::size_t{64} << 10U;
        if (m_options.findings != FindingsShown::ALL) {
            return;
        }
        while (!report.empty()) {
            const std::size_t size = report.find('\n') + 1;
            if (!AreReportsMessages() || m_repetitions.IsShown(ReasonOf(report.substr(0, size)))) {
                AppendFinding(inputName, report.substr(0, size));
            }
            report.remove_prefix(size);
            if (m_named.size() >= MOST || (report.empty() && !m_named.empty())) {
                WriteNamed(m_named);
                m_named.clear();
            }
        }
    }

    void AppendFinding(std::string_view inputName, std::string_view finding) {
        if (!m_work.isReportColoured) {
            m_named.append(inputName).append(finding);
            return;
        }
        const std::size_t placeEnd = finding.find(": ") + 1;
        m_named.append(PLACE_COLOUR).append(inputName).append(finding.substr(0, placeEnd)).append(RESET);
        m_named.append(finding.substr(placeEnd));
    }
    // Of a line of a report, ":line:column: reason".
    static std::string_view ReasonOf(std::string_view line) { return line.substr(line.find(": ") + 2); }

    [[nodiscard]] bool AreReportsMessages() const { return !m_work.isReportTheOutput && m_options.rejects.empty(); }

    void WriteNamed(std::string_view report) {
        if (m_work.isReportTheOutput) {
            m_output.Write(report);
        } else if (m_rejects) {
            WriteRejects(report);
        } else {
            m_progress.Clear();
            WriteMessage(report);
        }
    }

    // Fails if the reader of the rejected lines goes away: otherwise the output would lack lines unnoticed.
    void WriteRejects(std::string_view report) {
        try {
            m_rejects->Write(report);
        } catch (const ClosedPipe& closed) {
            throw Failure(Cause::OUTPUT, m_options.rejects + ": " + closed.what());
        } catch (const Failure&) {
            m_rejects.reset();  // an incomplete file must not appear
            throw;
        }
    }

    // The rejected lines are useful however the run ended.
    LineCounts End() {
        if (m_rejects) {
            m_rejects->Complete();
        }
        m_progress.Clear();
        if (m_repetitions.Hidden() != 0) {
            WriteMessage("kxdu: " + std::to_string(m_repetitions.Hidden()) +
                         " more such messages are not shown; --rejects FILE takes all\n");
        }
        return m_counts;
    }

    // The caller reports the failure that ended the run.
    void EndAfterFailure() {
        try {
            End();
        } catch (const Failure& failure) {
            WriteMessage(std::string("kxdu: ") + failure.what() + "\n");
        }
    }

    const BulkOptions& m_options;
    const LineWork& m_work;
    std::size_t m_inFlight;
    std::size_t m_blockSize;
    std::size_t m_mostResult = m_blockSize * LineResult::MOST_GROWTH;  // of one piece
    BlockReader m_reader;
    Output m_output;
    std::optional<Output> m_rejects;
    std::optional<Output> m_aside;
    Progress m_progress;
    std::vector<std::unique_ptr<Piece>> m_pieces;
    tbb::concurrent_queue<Piece*> m_free;
    std::unique_ptr<Piece> m_large;
    Piece* m_waiting = nullptr;  // read, and converted after a pause
    bool m_isInputAtEnd = false;
    std::exception_ptr m_readFailure;  // thrown after everything read before is written
    std::atomic<bool> m_isStopped = false;
    std::string m_named;
    Repetitions m_repetitions;
    LineCounts m_counts;
};

LineCounts RunLines(const BulkOptions& options, const LineWork& work) {
    RefuseLoss(options, work);
    LineCounts counts = LineRun(options, work).Run();
    if (options.findings == FindingsShown::ALL) {
        WriteMessage(ClosingMessage(work, counts));
    }
    return counts;
}

}  // namespace NS_KX
