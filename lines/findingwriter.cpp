#include "lines/findingwriter.h"

#include <cstddef>

#include "lines/descriptor.h"
#include "lines/failure.h"

namespace NS_KX {

namespace {

constexpr std::string_view PLACE_COLOUR = "\x1b[36m";
constexpr std::string_view RESET = "\x1b[0m";

// The reason in a line of a report, ":line:column: reason".
std::string_view ReasonOf(std::string_view finding) {
    return finding.substr(finding.find(": ") + 2);
}

}  // namespace

FindingWriter::FindingWriter(const BulkOptions& options, const LineWork& work, Output& output, Progress& progress)
    : m_options(options), m_work(work), m_output(output), m_progress(progress) {
    if (!options.rejects.empty()) {
        m_rejects.emplace(options.rejects);
    }
}

void FindingWriter::Write(std::string_view report, std::string_view inputName) {
    // The input's name may be long, so only a few lines are held with it at a time.
    constexpr std::size_t MOST_HELD = std::size_t{64} << 10U;
    if (m_options.findings != FindingsShown::ALL) {
        return;
    }
    while (!report.empty()) {
        const std::string_view finding = report.substr(0, report.find('\n') + 1);
        if (!AreMessages() || m_repetitions.IsShown(ReasonOf(finding))) {
            AppendFinding(finding, inputName);
        }
        report.remove_prefix(finding.size());
        if (m_named.size() >= MOST_HELD || (report.empty() && !m_named.empty())) {
            WriteNamed();
            m_named.clear();
        }
    }
}

void FindingWriter::AppendFinding(std::string_view finding, std::string_view inputName) {
    if (!m_work.isReportColoured) {
        m_named.append(inputName).append(finding);
        return;
    }
    const std::size_t placeEnd = finding.find(": ") + 1;
    m_named.append(PLACE_COLOUR).append(inputName).append(finding.substr(0, placeEnd)).append(RESET);
    m_named.append(finding.substr(placeEnd));
}

void FindingWriter::WriteNamed() {
    if (m_work.isReportTheOutput) {
        m_output.Write(m_named);
    } else if (m_rejects) {
        WriteRejects();
    } else {
        m_progress.Clear();
        WriteMessage(m_named);
    }
}

void FindingWriter::WriteRejects() {
    try {
        m_rejects->Write(m_named);
    } catch (const ClosedPipe& closed) {
        throw Failure(Cause::OUTPUT, m_options.rejects + ": " + closed.what());
    } catch (const Failure&) {
        m_rejects.reset();  // an incomplete file must not appear
        throw;
    }
}

void FindingWriter::End() {
    if (m_rejects) {
        m_rejects->Complete();
    }
    if (m_repetitions.Hidden() != 0) {
        m_progress.Clear();
        WriteMessage(m_options.names.Prefix() + std::to_string(m_repetitions.Hidden()) +
                     " more such messages are not shown; " + std::string(m_options.names.rejectsOption) +
                     " FILE takes all\n");
    }
}

}  // namespace NS_KX
