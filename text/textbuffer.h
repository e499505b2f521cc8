#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>

namespace NS_KX {

/// A text that grows at its end, for a block of output lines. Unlike std::string, it does not clear new room.
class TextBuffer {
public:
    [[nodiscard]] std::size_t GetSize() const noexcept { return m_size; }
    [[nodiscard]] std::string_view View() const noexcept { return {m_text.get(), m_size}; }

    /// Makes it empty; its memory is kept.
    void Clear() noexcept { m_size = 0; }
    /// Removes the last `count` characters.
    void Pop(std::size_t count) noexcept { m_size -= count; }
    /// Adds room for `count` characters, which the caller fills. Throws std::bad_alloc.
    char* Push(std::size_t count) {
        if (count > m_capacity - m_size) {
            Grow(m_size + count);
        }
        char* const room = m_text.get() + m_size;
        m_size += count;
        return room;
    }
    void Put(char character) { *Push(1) = character; }

private:
    void Grow(std::size_t least) {
        constexpr std::size_t SMALLEST = 256;
        const std::size_t capacity = std::max({least, m_capacity + m_capacity / 2, SMALLEST});
        auto text = std::make_unique_for_overwrite<char[]>(capacity);
        if (m_size != 0) {
            std::memcpy(text.get(), m_text.get(), m_size);
        }
        m_text = std::move(text);
        m_capacity = capacity;
    }

    std::unique_ptr<char[]> m_text;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

inline void Append(TextBuffer& buffer, std::string_view text) {
    if (!text.empty()) {
        std::memcpy(buffer.Push(text.size()), text.data(), text.size());
    }
}

template <class Number>
void AppendNumber(TextBuffer& buffer, Number number) {
    constexpr std::size_t LONGEST = 20;  // "-9223372036854775808"
    char* const begin = buffer.Push(LONGEST);
    buffer.Pop(LONGEST - static_cast<std::size_t>(std::to_chars(begin, begin + LONGEST, number).ptr - begin));
}

}  // namespace NS_KX
