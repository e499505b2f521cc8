#include "lines/blockconversion.h"

#include <cstring>
#include <limits>
#include <string>

#include "lines/failure.h"
#include "text/line.h"
#include "text/utf8.h"

namespace NS_KX {

namespace {

// Whether the line can be converted; refuses it if not. Looks at it only where the block gives cause to.
bool IsText(std::string_view line, bool hasNul, bool isChecked, BlockInFlight& block) {
    const auto flaw = line.empty() || hasNul || isChecked ? FindFlaw(line, !isChecked) : std::nullopt;
    if (flaw) {
        block.converter->Refuse(flaw->reason, flaw->column, block.result);
    }
    return !flaw;
}

// A reader of the library may cut a field inside a character. ASCII input needs no such check.
void RefuseInvalidOutput(std::size_t before, LineResult& result) {
    const std::string_view made = result.output.View().substr(before);
    if (!IsUtf8(made)) {
        result.output.Pop(made.size());
        result.Report("cannot be written as UTF-8: a field of what is read begins or ends inside a character");
    }
}

}  // namespace

void BlockConversion::Begin(BlockInFlight& block) const {
    LineResult& result = block.result;
    result.Begin(block.input.inputName, block.input.firstLine, m_mostResult);
    result.m_head = block.input.head;
    block.rest = block.input.Text();
    if (block.input.isTooLongLine) {
        block.converter->Refuse(LINE_TOO_LONG, 0, result);
        ++result.m_line;
        return;
    }
    ConvertRest(block);
}

void BlockConversion::Continue(BlockInFlight& block) const {
    block.result.Begin(block.input.inputName, block.result.m_line, std::numeric_limits<std::size_t>::max());
    ConvertRest(block);
}

void BlockConversion::ConvertRest(BlockInFlight& block) const {
    LineResult& result = block.result;
    // Checked once for each block instead of for each line.
    const bool hasNul = std::memchr(block.rest.data(), 0, block.rest.size()) != nullptr;
    const bool mayBeInvalid = m_work.mustBeUtf8 && !m_work.isVerbatim && !IsAscii(block.rest);
    while (!block.rest.empty() && result.Size() < m_mostResult) {
        std::string_view rest = block.rest;
        const std::string_view line = m_work.isVerbatim ? TakeVerbatimLine(rest) : TakeLine(rest);
        const LineResult::Mark mark = result.MarkLine();
        try {
            ConvertLine(line, hasNul, mayBeInvalid, block);
        } catch (const LineResult::Full&) {
            result.TakeBack(mark);
            return;
        } catch (const Failure& failure) {
            block.failure =
                std::make_exception_ptr(Failure(failure.GetCause(), result.PlaceOf(0) + ": " + failure.what()));
            return;
        } catch (...) {
            block.failure = std::current_exception();
            return;
        }
        ++result.m_line;
        block.rest = rest;
    }
}

void BlockConversion::ConvertLine(std::string_view line, bool hasNul, bool mayBeInvalid, BlockInFlight& block) const {
    LineResult& result = block.result;
    const bool isChecked = mayBeInvalid && !IsAscii(line);
    if (line.size() > LONGEST_LINE) {
        block.converter->Refuse(LINE_TOO_LONG, 0, result);
    } else if (m_work.isVerbatim || IsText(line, hasNul, isChecked, block)) {
        const std::size_t before = result.output.GetSize();
        block.converter->Convert(line, result);
        if (isChecked) {
            RefuseInvalidOutput(before, result);
        }
    }
}

}  // namespace NS_KX
