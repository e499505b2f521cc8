#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "lines/output.h"

namespace NS_KX {

/// An output for many small pieces of text.
class BufferedOutput {
public:
    explicit BufferedOutput(const std::filesystem::path& file) : m_output(file) { m_buffer.reserve(CAPACITY); }

    /// Throws as `Output` does; the failure may concern an earlier piece.
    void Write(std::string_view text) {
        if (text.size() > CAPACITY - m_buffer.size()) {
            Flush();
        }
        m_buffer.append(text);  // grows for a piece that is larger than the buffer
    }

    void Complete() {
        Flush();
        m_output.Complete();
    }

    /// Whether it is a terminal.
    [[nodiscard]] bool IsTerminal() const { return m_output.IsTerminal(); }

    /// Hands over all pieces written so far. Throws as above.
    void Flush() {
        m_output.Write(m_buffer);
        m_buffer.clear();
    }

private:
    static constexpr std::size_t CAPACITY = 256U << 10U;

    Output m_output;
    std::string m_buffer;
};

}  // namespace NS_KX
