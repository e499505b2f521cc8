/// Writing of FDN text: the one place that puts it together.
#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace NS_UTIL::NS_FDN {

/// Writes into the caller's string, in place of what it held. Gathers the text on the stack and hands it over in
/// `Flush`, so that the string grows once, and not at all if it has room.
class FdnWriter {
public:
    /// `names` is the size of the record's texts, if more than one piece of them is appended.
    explicit FdnWriter(std::string& out, std::size_t names = 0) noexcept : m_out(out), m_names(names) {}
    FdnWriter(const FdnWriter&) = delete;
    FdnWriter& operator=(const FdnWriter&) = delete;

    /// Appends `text` as it is.
    FdnWriter& Text(std::string_view text) {
        if (text.size() > m_gathered.size() - m_size) {
            Spill(text);
        } else {
            std::memcpy(m_gathered.data() + m_size, text.data(), text.size());
            m_size += text.size();
        }
        return *this;
    }

    /// Appends a number in decimal.
    template <std::integral Number>
    FdnWriter& Decimal(Number number) {
        constexpr std::size_t LONGEST = 11;  // "-2147483648"
        static_assert(sizeof(Number) == sizeof(std::int32_t));
        if (LONGEST > m_gathered.size() - m_size) {
            Spill({});
        }
        char* const begin = m_gathered.data() + m_size;
        m_size += static_cast<std::size_t>(std::to_chars(begin, begin + LONGEST, number).ptr - begin);
        return *this;
    }

    /// Appends a level's head, such as ",FR=", and its number.
    FdnWriter& Level(std::string_view head, std::int32_t number) { return Text(head).Decimal(number); }

    /// Hands the gathered text to the caller's string.
    void Flush() {
        Begin();
        m_out.append(m_gathered.data(), m_size);
        m_size = 0;
    }

    /// Returns the answer of `question`, which asks the surroundings. If it throws, the caller's string holds what was
    /// written up to here.
    template <class Question>
    auto Ask(Question question) {
        try {
            return question();
        } catch (...) {
            Flush();
            throw;
        }
    }

private:
    // Called when the text outgrows the stack. Makes room for what may follow, too: without names, any identifier fits
    // into what is gathered. Not inlined: this path is rare, and its size keeps the common one from being inlined.
    [[gnu::noinline]] void Spill(std::string_view tail) {
        Begin();
        if (const std::size_t size = m_out.size() + m_size + tail.size(); size > m_out.capacity()) {
            m_out.reserve(size + GATHERED + m_names);
        }
        m_out.append(m_gathered.data(), m_size).append(tail);
        m_size = 0;
    }

    void Begin() {
        if (!m_begun) {
            m_out.clear();
            m_begun = true;
        }
    }

    static constexpr std::size_t GATHERED = 256;

    std::string& m_out;
    std::size_t m_names;
    std::size_t m_size = 0;
    bool m_begun = false;
    std::array<char, GATHERED> m_gathered;
};

}  // namespace NS_UTIL::NS_FDN
