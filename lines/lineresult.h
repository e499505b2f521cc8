#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "text/textbuffer.h"

namespace NS_KX {

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

    /// Reports something about the current line, as "file:line: reason", or "file:line:column: reason" if `column`
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
    friend class BlockConversion;
    friend class LineRun;

    // Thrown if a line has no room before all earlier lines are written.
    struct Full {};

    // Where the additions of a line begin, to take them back.
    struct Mark {
        std::size_t output;
        std::size_t aside;
        std::size_t report;
        std::size_t findings;
        std::size_t linesWithFindings;
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
    std::size_t m_linesWithFindings = 0;
    std::size_t m_lastFindingLine = 0;
    std::size_t m_outputBeforeFirst = 0;
    std::size_t m_asideBeforeFirst = 0;
    std::size_t m_firstFindingEnd = 0;
    std::size_t m_firstFindingLine = 0;
    std::size_t m_notices = 0;
    std::string m_firstNotice;
    Tallies m_tallies{};
};

}  // namespace NS_KX
