#pragma once

#include <cstddef>
#include <exception>
#include <memory>
#include <string_view>

#include "lines/blockreader.h"
#include "lines/linework.h"

namespace NS_KX {

/// A block of lines with everything that its conversion needs. Converting another block reuses its memory.
struct BlockInFlight {
    InputBlock input;
    std::string_view rest;  ///< of the block's text: lines that are not converted yet
    LineResult result;
    std::unique_ptr<LineConverter> converter;
    std::exception_ptr failure;  ///< what the converter threw
};

/// Converts the lines of blocks. Any thread, each with its own block.
class BlockConversion {
public:
    /// The results of a block are made in parts of about `mostResult` bytes. `work` must outlive it.
    BlockConversion(const LineWork& work, std::size_t mostResult) : m_work(work), m_mostResult(mostResult) {}

    /// Converts the lines of `block.input` until there are no more, or until their results are as large as one part
    /// allows.
    void Begin(BlockInFlight& block) const;

    /// Converts lines of `block.rest` in the same way, after the results before them were written. The first of them
    /// has as much room as it asks for.
    void Continue(BlockInFlight& block) const;

    [[nodiscard]] std::size_t MostResult() const noexcept { return m_mostResult; }

private:
    void ConvertRest(BlockInFlight& block) const;
    void ConvertLine(std::string_view line, bool hasNul, bool mayBeInvalid, BlockInFlight& block) const;

    const LineWork& m_work;
    std::size_t m_mostResult;
};

}  // namespace NS_KX
