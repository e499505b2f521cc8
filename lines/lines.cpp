#include "lines/lines.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

#include <oneapi/tbb/concurrent_queue.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <unistd.h>

#include "lines/blockreader.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "lines/output.h"
#include "lines/progress.h"
#include "text/text.h"

namespace NS_KX {

namespace {

constexpr std::string_view LINE_TOO_LONG = "the line is longer than 1 MiB";

// In the worst case, a text of control characters as JSON, an input byte becomes twelve output bytes; and the output's
// buffer may have room for half as much again.
constexpr std::size_t GROWTH = 20;
constexpr std::size_t MEMORY = std::size_t{40} << 20U;
// Less of a larger one stays in the processor's caches: with 512 KiB, `kxdu get` takes 11 % more time of the processor;
// with 128 KiB, no less.
constexpr std::size_t LARGEST_BLOCK = std::size_t{256} << 10U;
constexpr std::size_t SMALLEST_BLOCK = std::size_t{4} << 10U;

std::size_t BlockSize(std::size_t inFlight) {
    return std::clamp(MEMORY / GROWTH / inFlight, SMALLEST_BLOCK, LARGEST_BLOCK);
}

// A block on its way, with all that belongs to it.
struct Piece {
    InputBlock input;
    LineResult result;
    std::unique_ptr<LineConverter> converter;
    std::exception_ptr failure;  // what the converter threw
};

std::size_t Threads(unsigned jobs) {
    return jobs != 0 ? jobs : static_cast<std::size_t>(tbb::info::default_concurrency());
}

std::string Summary(const LineWork& work, const LineCounts& counts) {
    if (work.summarize && !counts.isStopped) {
        return work.summarize(counts);
    }
    if (counts.findings == 0) {
        return {};
    }
    return "kxdu: " + std::to_string(counts.findings) + " " + std::string(work.finding) + " in " +
           std::to_string(counts.lines) + (counts.lines == 1 ? " line" : " lines") +
           (counts.isStopped ? ", and stopped there\n" : "\n");
}

// An input may be replaced by the output, which takes its place when all is read; but not by the rejected lines, and it
// may not grow while it is read. What else the run needs is replaced by neither.
void RefuseLoss(const BulkOptions& options, std::vector<FileInUse> filesInUse) {
    RefuseReplacing(filesInUse, options.output);
    const auto nameOf = [](const std::string& file, const char* stream) {
        return file.empty() || file == "-" ? std::string(stream) : file;
    };
    const std::string output = nameOf(options.output, "/dev/stdout");
    filesInUse.push_back({output, "output"});
    const std::vector<std::string> standardInput{"-"};
    for (const std::string& file : options.files.empty() ? standardInput : options.files) {
        const std::string input = nameOf(file, "/dev/stdin");
        filesInUse.push_back({input, "input"});
        if (output == "/dev/stdout" && IsSameFile(output, input)) {
            throw Failure(Cause::USAGE,
                          (file == "-" ? "standard input" : file) + ": is standard output too; write to it with -o");
        }
    }
    if (!options.rejects.empty() && nameOf(options.rejects, "/dev/stdout") == output && output == "/dev/stdout") {
        throw Failure(Cause::USAGE, "--rejects: the output goes to standard output too; name a file for one of them");
    }
    RefuseReplacing(filesInUse, options.rejects, "the rejected lines");
}

}  // namespace

// ---- LineResult -----------------------------------------------------------------------------------------------------

void LineResult::Begin(std::string_view inputName, std::size_t firstLine) {
    output.Clear();
    m_report.Clear();
    m_inputName = inputName;
    m_line = firstLine;
    m_findings = 0;
}

std::string LineResult::Place() const {
    return std::string(m_inputName).append(":").append(std::to_string(m_line));
}

void LineResult::Report(std::string_view reason, std::size_t column) {
    Append(m_report, m_inputName);
    Append(m_report, ":");
    AppendNumber(m_report, m_line);
    if (column != 0) {
        Append(m_report, ":");
        AppendNumber(m_report, column);
    }
    Append(m_report, ": ");
    Append(m_report, reason);
    Append(m_report, "\n");
    if (m_findings++ == 0) {
        m_firstFindingLine = m_line;
        m_outputBeforeFirst = output.GetSize();
        m_firstFindingEnd = m_report.GetSize();
    }
}

// ---- The run --------------------------------------------------------------------------------------------------------

class LineRun {
public:
    LineRun(const BulkOptions& options, const LineWork& work)
        : m_options(options),
          m_work(work),
          // One for each thread, and some that are read or written. With twice as many, `kxdu decode --jobs 2` takes
          // 7 % more time of the processor; with one less, no less.
          m_inFlight(Threads(options.jobs) * 3 / 2 + 1),
          m_blockSize(BlockSize(m_inFlight)),
          m_reader(options.files, m_blockSize),
          m_output(options.output),
          m_progress(IsProgressShown(), m_reader.TotalBytes()) {
        if (!options.rejects.empty()) {
            m_rejects.emplace(options.rejects);
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
        return !m_options.isProgressHidden && isatty(STDERR_FILENO) == 1 && !m_output.IsTerminal();
    }

    void RunAll() {
        const tbb::global_control threads(tbb::global_control::max_allowed_parallelism, Threads(m_options.jobs));
        m_output.Write(m_work.header);
        while (!m_isStopped && !m_isInputAtEnd) {
            RunPipeline();
            RunLargePiece();
            if (m_readFailure && !m_isStopped) {
                std::rethrow_exception(m_readFailure);
            }
        }
        if (!m_isStopped || m_work.isReportTheOutput) {  // otherwise, half an output is none
            m_output.Complete();
        }
    }

    void RunPipeline() {
        tbb::parallel_pipeline(
            m_inFlight,
            tbb::make_filter<void, Piece*>(tbb::filter_mode::serial_in_order, [this](tbb::flow_control& flow) {
                return ReadPiece(flow);
            }) & tbb::make_filter<Piece*, Piece*>(tbb::filter_mode::parallel, [this](Piece* piece) {
                ConvertPiece(*piece);
                return piece;
            }) & tbb::make_filter<Piece*, void>(tbb::filter_mode::serial_in_order, [this](Piece* piece) {
                WritePiece(*piece);
                m_free.push(piece);
            }));
    }

    Piece* ReadPiece(tbb::flow_control& flow) {
        Piece* piece = nullptr;
        if (m_isStopped || !m_free.try_pop(piece)) {
            flow.stop();
            return nullptr;
        }
        if (!ReadBlock(piece->input)) {
            m_isInputAtEnd = true;
        } else if (piece->input.size <= m_blockSize) {
            return piece;
        } else {
            m_large = NewPiece();
            std::swap(m_large->input, piece->input);
        }
        m_free.push(piece);
        flow.stop();
        return nullptr;
    }

    // What is thrown here would cancel the pipeline, and with it the lines that were read already.
    bool ReadBlock(InputBlock& block) {
        try {
            return m_reader.Next(block);
        } catch (...) {
            m_readFailure = std::current_exception();
            return false;
        }
    }

    // Only one block with very long lines is held at a time, and after all others.
    void RunLargePiece() {
        if (m_large && !m_isStopped) {
            ConvertPiece(*m_large);
            WritePiece(*m_large);
        }
        m_large.reset();
    }

    void ConvertPiece(Piece& piece) const {
        LineResult& result = piece.result;
        result.Begin(piece.input.inputName, piece.input.firstLine);
        if (piece.input.isTooLongLine) {
            result.Report(LINE_TOO_LONG);
            ++result.m_line;
            return;
        }
        std::string_view text = piece.input.Text();
        // Asked of a block, so that its lines need not be: 3 % fewer instructions of `kxdu get NE` for the NUL bytes,
        // 7 % of `kxdu decode` for ASCII.
        const bool hasNul = std::memchr(text.data(), 0, text.size()) != nullptr;
        const bool mayBeInvalid = m_work.mustBeUtf8 && !IsAscii(text);
        while (!text.empty()) {
            const auto end = text.find('\n');
            std::string_view line = text.substr(0, end);
            text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
            if (!m_work.isVerbatim && end != std::string_view::npos && line.ends_with('\r')) {
                line.remove_suffix(1);  // belongs to the line end
            }
            try {
                ConvertLine(line, hasNul, mayBeInvalid, piece);
            } catch (const Failure& failure) {
                piece.failure =
                    std::make_exception_ptr(Failure(failure.GetCause(), result.Place() + ": " + failure.what()));
                return;
            } catch (...) {
                piece.failure = std::current_exception();
                return;
            }
            ++result.m_line;
        }
    }

    void ConvertLine(std::string_view line, bool hasNul, bool mayBeInvalid, Piece& piece) const {
        LineResult& result = piece.result;
        if (line.size() > LONGEST_LINE) {
            result.Report(LINE_TOO_LONG);
        } else if (m_work.isVerbatim || IsText(line, hasNul, mayBeInvalid, result)) {
            piece.converter->Convert(line, result);
        }
    }

    // Reports what is in the way otherwise.
    static bool IsText(std::string_view line, bool hasNul, bool mayBeInvalid, LineResult& result) {
        if (line.empty()) {
            result.Report("the line is empty");
            return false;
        }
        if (const auto nul = hasNul ? line.find('\0') : std::string_view::npos; nul != std::string_view::npos) {
            result.Report("NUL byte", nul + 1);
            return false;
        }
        if (const auto invalid = mayBeInvalid ? FindInvalidUtf8(line) : line.size(); invalid != line.size()) {
            result.Report("not UTF-8", invalid + 1);
            return false;
        }
        return true;
    }

    void WritePiece(Piece& piece) {
        LineResult& result = piece.result;
        if (m_isStopped) {
            return;
        }
        m_isStopped = m_options.isStrict && result.m_findings != 0;
        if (m_isStopped) {
            m_findings += 1;
            m_lines += result.m_firstFindingLine + 1 - piece.input.firstLine;
            m_output.Write(result.output.View().substr(0, result.m_outputBeforeFirst));
            WriteReport(result.m_report.View().substr(0, result.m_firstFindingEnd));
            return;
        }
        m_findings += result.m_findings;
        m_lines += result.m_line - piece.input.firstLine;
        m_output.Write(result.output.View());
        WriteReport(result.m_report.View());
        if (piece.failure) {
            std::rethrow_exception(piece.failure);
        }
        m_progress.Update(piece.input.bytesRead, m_lines);
    }

    void WriteReport(std::string_view report) {
        if (m_work.isReportTheOutput) {
            m_output.Write(report);
        } else if (m_rejects) {
            WriteRejects(report);
        } else if (!report.empty()) {
            m_progress.Clear();
            std::fwrite(report.data(), 1, report.size(), stderr);
        }
    }

    // Only the reader of the output may go away: without the rejected lines, its files would be incomplete unseen.
    void WriteRejects(std::string_view report) {
        try {
            m_rejects->Write(report);
        } catch (const ClosedPipe& closed) {
            throw Failure(Cause::OUTPUT, m_options.rejects + ": " + closed.what());
        } catch (const Failure&) {
            m_rejects.reset();  // half of them are none
            throw;
        }
    }

    // The rejected lines are of use however the run ended.
    LineCounts End() {
        if (m_rejects) {
            m_rejects->Complete();
        }
        m_progress.Clear();
        return {m_lines, m_findings, m_isStopped};
    }

    // What ended the run is told by whoever catches it.
    void EndAfterFailure() {
        try {
            End();
        } catch (const Failure& failure) {
            static_cast<void>(std::fprintf(stderr, "kxdu: %s\n", failure.what()));
        }
    }

    const BulkOptions& m_options;
    const LineWork& m_work;
    std::size_t m_inFlight;
    std::size_t m_blockSize;
    BlockReader m_reader;
    Output m_output;
    std::optional<Output> m_rejects;
    Progress m_progress;
    std::vector<std::unique_ptr<Piece>> m_pieces;
    tbb::concurrent_queue<Piece*> m_free;
    std::unique_ptr<Piece> m_large;
    bool m_isInputAtEnd = false;
    std::exception_ptr m_readFailure;  // told when all is written that was read before
    std::atomic<bool> m_isStopped = false;
    std::uint64_t m_findings = 0;
    std::uint64_t m_lines = 0;
};

LineCounts RunLines(const BulkOptions& options, const LineWork& work) {
    RefuseLoss(options, work.filesInUse);
    const LineCounts counts = LineRun(options, work).Run();
    std::fputs(Summary(work, counts).c_str(), stderr);
    return counts;
}

}  // namespace NS_KX
