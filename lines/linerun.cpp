#include "lines/linerun.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <optional>
#include <utility>
#include <vector>

#include <oneapi/tbb/concurrent_queue.h>
#include <oneapi/tbb/global_control.h>
#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <unistd.h>

#include "lines/blockconversion.h"
#include "lines/blockreader.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/findingwriter.h"
#include "lines/otherfile.h"
#include "lines/output.h"
#include "lines/outputconflicts.h"
#include "lines/progress.h"
#include "lines/terminal.h"

namespace NS_KX {

namespace {

// For the blocks in flight and their results. The output's buffer may take half as much again.
constexpr std::size_t MEMORY = std::size_t{24} << 20U;
// Larger blocks fall out of the processor's caches.
constexpr std::size_t LARGEST_BLOCK = std::size_t{256} << 10U;
constexpr std::size_t SMALLEST_BLOCK = std::size_t{2} << 10U;

std::size_t BlockSize(std::size_t inFlight) {
    return std::clamp(MEMORY / LineResult::MOST_GROWTH / inFlight, SMALLEST_BLOCK, LARGEST_BLOCK);
}

std::size_t Threads(unsigned jobs) {
    return jobs != 0 ? jobs : static_cast<std::size_t>(tbb::info::default_concurrency());
}

// ---- What a run says at its end -------------------------------------------------------------------------------------

std::string Lines(std::uint64_t count) {
    return std::to_string(count) + (count == 1 ? " line" : " lines");
}

std::string CountOfFindings(const LineWork& work, const LineCounts& counts) {
    const std::string findings = std::to_string(counts.findings) + " ";
    if (work.oneFinding.empty()) {
        return findings + std::string(work.finding) + " in " + Lines(counts.lines);
    }
    return findings + std::string(work.oneFinding) + (counts.findings == 1 ? "" : "s") + " in " +
           std::to_string(counts.linesWithFindings) + " of " + Lines(counts.lines);
}

std::string Summary(const LineWork& work, const LineCounts& counts) {
    return CountOfFindings(work, counts) + (counts.isStopped ? ", and stopped there\n" : "\n");
}

std::string SummaryOfNotices(const LineWork& work, const LineCounts& counts) {
    return Lines(counts.notices) + (counts.notices == 1 ? " has " : " have ") + std::string(work.notice) +
           ", first at " + counts.firstNotice + "; " + std::string(work.noticeAdvice) + "\n";
}

std::string ClosingMessage(const MessageNames& names, const LineWork& work, const LineCounts& counts) {
    if (work.summarize && !counts.isStopped) {
        return work.summarize(counts);
    }
    return (counts.notices == 0 ? std::string() : names.Prefix() + SummaryOfNotices(work, counts)) +
           (counts.findings == 0 ? std::string() : names.Prefix() + Summary(work, counts));
}

}  // namespace

// ---- The run --------------------------------------------------------------------------------------------------------

class LineRun {
public:
    LineRun(const BulkOptions& options, const LineWork& work)
        : m_options(options),
          m_work(work),
          // One for each thread, and some that are read or written; more would fall out of the processor's caches.
          m_inFlight(Threads(options.jobs) * 3 / 2 + 1),
          m_blockSize(BlockSize(m_inFlight)),
          m_conversion(work, m_blockSize * LineResult::MOST_GROWTH),
          m_reader(options.files, m_blockSize),
          m_output(options.output, options.isAppending ? Output::Mode::APPEND : Output::Mode::REPLACE),
          m_progress(IsProgressShown(), m_reader.TotalBytes()),
          m_findings(options, work, m_output, m_progress) {
        if (work.areHeadsKept) {
            m_reader.KeepHeads();
        }
        if (!options.aside.empty()) {
            m_aside.emplace(options.aside, Output::Mode::APPEND);
        }
        for (std::size_t block = 0; block < m_inFlight; ++block) {
            m_blocks.push_back(NewBlock());
            m_free.push(m_blocks.back().get());
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
    std::unique_ptr<BlockInFlight> NewBlock() const {
        auto block = std::make_unique<BlockInFlight>();
        block->converter = m_work.makeConverter();
        return block;
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
            RunLargeBlock();
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
        using Block = BlockInFlight*;
        const auto inOrder = tbb::filter_mode::serial_in_order;
        const auto read =
            tbb::make_filter<void, Block>(inOrder, [this](tbb::flow_control& flow) { return ReadForPipeline(flow); });
        const auto convert = tbb::make_filter<Block, Block>(tbb::filter_mode::parallel, [this](Block block) {
            m_conversion.Begin(*block);
            return block;
        });
        const auto write = tbb::make_filter<Block, void>(inOrder, [this](Block block) {
            WriteBlock(*block);
            m_free.push(block);
        });
        tbb::parallel_pipeline(m_inFlight, read & convert & write);
    }

    BlockInFlight* ReadForPipeline(tbb::flow_control& flow) {
        BlockInFlight* const block = m_isStopped ? nullptr : NextBlock();
        if (block == nullptr) {
            flow.stop();
        } else if (block->input.size > m_blockSize) {
            m_large = NewBlock();
            std::swap(m_large->input, block->input);
            m_free.push(block);
            flow.stop();
            return nullptr;
        }
        return block;
    }

    // Null at the end of the input, and if the pipeline must end before the lines that were read.
    BlockInFlight* NextBlock() {
        if (m_waiting != nullptr) {
            return std::exchange(m_waiting, nullptr);
        }
        BlockInFlight* block = nullptr;
        if (!m_free.try_pop(block)) {
            return nullptr;
        }
        if (!ReadBlock(block->input)) {
            m_isInputAtEnd = true;
            m_free.push(block);
            return nullptr;
        }
        if (m_work.isPauseDue && m_work.isPauseDue()) {
            m_waiting = block;
            return nullptr;
        }
        return block;
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
    void RunLargeBlock() {
        if (m_large && !m_isStopped) {
            m_conversion.Begin(*m_large);
            WriteBlock(*m_large);
        }
        m_large.reset();
    }

    // The pipeline is empty, so no converter runs.
    void Pause() {
        if (m_waiting != nullptr && !m_isStopped) {
            m_progress.Clear();
            m_work.pause();
        }
    }

    // Writes the results of a block, and continues with the lines that had no room before.
    void WriteBlock(BlockInFlight& block) {
        while (!m_isStopped) {
            WriteResult(block.result, block.input.inputName);
            if (m_work.takeGathered) {
                m_work.takeGathered(*block.converter);
            }
            if (block.failure) {
                std::rethrow_exception(block.failure);
            }
            if (block.rest.empty()) {
                break;
            }
            m_conversion.Continue(block);
        }
        if (block.result.Size() > m_conversion.MostResult()) {
            block.result.Release();  // many blocks wait with their buffers
        }
        m_progress.Update(block.input.bytesRead, m_counts.lines);
    }

    void WriteResult(const LineResult& result, std::string_view inputName) {
        m_counts.isFound = m_counts.isFound || result.m_findings != 0;
        m_isStopped = m_options.isStrict && result.m_findings != 0;
        m_counts.isStopped = m_isStopped;
        if (m_isStopped) {
            WriteUpToFirstFinding(result, inputName);
            return;
        }
        m_output.Write(result.output.View());
        WriteAside(result.aside.View());
        m_findings.Write(result.m_report.View(), inputName);
        AddCounts(result, inputName);
        if (m_work.written) {
            m_work.written(result.m_line - result.m_firstLine);
        }
    }

    void WriteUpToFirstFinding(const LineResult& result, std::string_view inputName) {
        m_output.Write(result.output.View().substr(0, result.m_outputBeforeFirst));
        WriteAside(result.aside.View().substr(0, result.m_asideBeforeFirst));
        m_findings.Write(result.m_report.View().substr(0, result.m_firstFindingEnd), inputName);
        m_counts.findings += 1;
        m_counts.linesWithFindings += 1;
        m_counts.lines += result.m_firstFindingLine + 1 - result.m_firstLine;
    }

    void AddCounts(const LineResult& result, std::string_view inputName) {
        m_counts.findings += result.m_findings;
        m_counts.linesWithFindings += result.m_linesWithFindings;
        m_counts.lines += result.m_line - result.m_firstLine;
        if (result.m_notices != 0 && m_counts.notices == 0) {
            m_counts.firstNotice = std::string(inputName) + ":" + result.m_firstNotice;
        }
        m_counts.notices += result.m_notices;
        for (std::size_t tally = 0; tally < result.m_tallies.size(); ++tally) {
            m_counts.tallies[tally] += result.m_tallies[tally];
        }
    }

    void WriteAside(std::string_view lines) {
        if (!m_aside) {
            return;
        }
        try {
            m_aside->Write(lines);
        } catch (const ClosedPipe& closed) {
            throw Failure(Cause::OUTPUT, m_options.aside + ": " + closed.what());
        }
    }

    // The rejected lines are useful however the run ended.
    LineCounts End() {
        m_findings.End();
        m_progress.Clear();
        return m_counts;
    }

    // The caller reports the failure that ended the run.
    void EndAfterFailure() {
        try {
            End();
        } catch (const Failure& failure) {
            WriteMessage(m_options.names.Prefix() + failure.what() + "\n");
        }
    }

    const BulkOptions& m_options;
    const LineWork& m_work;
    std::size_t m_inFlight;
    std::size_t m_blockSize;
    BlockConversion m_conversion;
    BlockReader m_reader;
    Output m_output;
    Progress m_progress;
    FindingWriter m_findings;
    std::optional<Output> m_aside;
    std::vector<std::unique_ptr<BlockInFlight>> m_blocks;
    tbb::concurrent_queue<BlockInFlight*> m_free;
    std::unique_ptr<BlockInFlight> m_large;
    BlockInFlight* m_waiting = nullptr;  // read, and converted after a pause
    bool m_isInputAtEnd = false;
    std::exception_ptr m_readFailure;  // thrown after everything read before is written
    std::atomic<bool> m_isStopped = false;
    LineCounts m_counts;
};

LineCounts RunLines(const BulkOptions& options, const LineWork& work) {
    RefuseOutputConflicts(options, work);
    LineCounts counts = LineRun(options, work).Run();
    if (options.findings == FindingsShown::ALL) {
        WriteMessage(ClosingMessage(options.names, work, counts));
    }
    return counts;
}

}  // namespace NS_KX
