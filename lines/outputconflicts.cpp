#include "lines/outputconflicts.h"

#include <string>
#include <vector>

#include "lines/failure.h"

namespace NS_KX {

namespace {

constexpr std::string_view STANDARD_OUTPUT = "/dev/stdout";

std::string NameOf(const std::string& file, std::string_view stream) {
    return file.empty() || file == "-" ? std::string(stream) : file;
}

void RefuseAppending(const std::vector<FileInUse>& filesInUse, const std::string& target, std::string_view lines) {
    for (const auto& [name, role] : filesInUse) {
        if (IsSameFile(target, name)) {
            throw Failure(Cause::INPUT, std::string(target)
                                            .append(": is the ")
                                            .append(role)
                                            .append(", so ")
                                            .append(lines)
                                            .append(" cannot be appended to it"));
        }
    }
}

class OutputCheck {
public:
    OutputCheck(const BulkOptions& options, const LineWork& work)
        : m_options(options), m_work(work), m_output(NameOf(options.output, STANDARD_OUTPUT)) {
        for (const std::string& file : options.files.empty() ? std::vector<std::string>{"-"} : options.files) {
            m_inputs.push_back({NameOf(file, "/dev/stdin"), "input"});
        }
        m_filesInUse = work.filesInUse;
    }

    void Run() {
        RefuseReplacing(m_filesInUse, m_options.output);
        CheckInputs();
        m_filesInUse.push_back({m_output, "output"});
        m_filesInUse.insert(m_filesInUse.end(), m_inputs.begin(), m_inputs.end());
        CheckAside();
        CheckRejects();
    }

private:
    void CheckInputs() const {
        for (const FileInUse& input : m_inputs) {
            const std::string shown = input.name == "/dev/stdin" ? "standard input" : input.name;
            if (m_output == STANDARD_OUTPUT && IsSameFile(m_output, input.name)) {
                throw Failure(Cause::INPUT, shown + ": is standard output too; write to it with " +
                                                std::string(m_options.names.outputOption));
            }
            const bool areReportsMessages = m_options.rejects.empty() && !m_work.isReportTheOutput;
            if (areReportsMessages && IsSameFile("/dev/stderr", input.name)) {
                throw Failure(Cause::INPUT, shown + ": is standard error too, where the rejected lines are reported");
            }
        }
        if (m_options.isAppending) {
            RefuseAppending(m_inputs, m_output, "the output");
        }
    }

    void CheckAside() {
        if (m_options.aside.empty()) {
            return;
        }
        if (NameOf(m_options.aside, STANDARD_OUTPUT) == m_output) {
            throw Failure(Cause::INPUT,
                          m_options.aside + ": is the output, so the lines put aside cannot be appended to it");
        }
        RefuseAppending(m_filesInUse, m_options.aside, "the lines put aside");
        m_filesInUse.push_back({m_options.aside, "file of the lines put aside"});
    }

    void CheckRejects() const {
        const bool isStandardOutput =
            !m_options.rejects.empty() && NameOf(m_options.rejects, STANDARD_OUTPUT) == STANDARD_OUTPUT;
        if (isStandardOutput && m_output == STANDARD_OUTPUT) {
            throw Failure(Cause::INPUT, std::string(m_options.names.rejectsOption) +
                                            ": the output goes to standard output too; name a file for one of them");
        }
        RefuseReplacing(m_filesInUse, m_options.rejects, "the rejected lines");
    }

    const BulkOptions& m_options;
    const LineWork& m_work;
    std::string m_output;
    std::vector<FileInUse> m_inputs;
    std::vector<FileInUse> m_filesInUse;
};

}  // namespace

void RefuseOutputConflicts(const BulkOptions& options, const LineWork& work) {
    OutputCheck(options, work).Run();
}

}  // namespace NS_KX
