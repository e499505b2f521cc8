#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "lines/linework.h"
#include "lines/output.h"
#include "lines/progress.h"
#include "lines/repetitions.h"

namespace NS_KX {

/// Writes the findings of a run to where they belong: the output, the file of the rejected lines, or standard error,
/// where findings of the same kind are shown a few times and the rest is counted.
class FindingWriter {
public:
    /// `options`, `work`, `output` and `progress` must outlive it. Throws `Failure` if the file of the rejected lines
    /// cannot be made.
    FindingWriter(const BulkOptions& options, const LineWork& work, Output& output, Progress& progress);

    /// Writes `report`, lines as `LineResult` keeps them, with the input's name before each. Throws `Failure`, also if
    /// the reader of the rejected lines goes away: otherwise the output would lack lines unnoticed.
    void Write(std::string_view report, std::string_view inputName);

    /// Lets the file of the rejected lines appear, and says how many findings were not shown. Throws `Failure`.
    void End();

private:
    void AppendFinding(std::string_view finding, std::string_view inputName);
    void WriteNamed();
    void WriteRejects();
    [[nodiscard]] bool AreMessages() const { return !m_work.isReportTheOutput && m_options.rejects.empty(); }

    const BulkOptions& m_options;
    const LineWork& m_work;
    Output& m_output;
    Progress& m_progress;
    std::optional<Output> m_rejects;
    Repetitions m_repetitions;
    std::string m_named;  // findings with the input's name
};

}  // namespace NS_KX
