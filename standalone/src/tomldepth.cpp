#include "tomldepth.h"

#include <algorithm>
#include <vector>

namespace NS_STANDALONE {

namespace {

class DepthScanner {
public:
    explicit DepthScanner(std::string_view text) : m_text(text) {}

    std::optional<TextPlace> FindTooDeep() {
        BeginStatement();
        while (m_at < m_text.size()) {
            const std::size_t here = m_at++;
            Take(m_text[here]);
            if (m_depth > MAX_TOML_DEPTH) {
                return PlaceOf(here);
            }
        }
        return std::nullopt;
    }

private:
    // An array or an inline table that is not closed yet.
    struct Bracket {
        bool isTable;
        std::size_t depthAround;
    };

    enum class Part { START, HEADER, KEY, VALUE };

    void Take(char character) {
        switch (character) {
            case '"':
            case '\'':
                if (m_part == Part::START) {
                    BeginKey();
                }
                return SkipQuoted(character);
            case '#':
                m_at = std::min(m_text.find('\n', m_at), m_text.size());
                return;
            case '\n':
                return m_brackets.empty() ? BeginStatement() : void();
            case ' ':
            case '\t':
            case '\r':
                return;
            default:
                return m_part == Part::VALUE ? TakeOfValue(character) : TakeOfName(character);
        }
    }

    // Takes a character of a header or a key.
    void TakeOfName(char character) {
        if (m_part == Part::START && character == '[') {
            m_part = Part::HEADER;
            m_depth = 1;
            m_at += m_text.substr(m_at).starts_with('[') ? 1 : 0;
        } else if (character == '.') {
            ++m_depth;
        } else if (m_part == Part::HEADER) {
            m_headerDepth = m_depth;
        } else if (character == '}') {
            Close();  // the table is empty, or has a comma after its last item
        } else if (character == '=') {
            m_part = Part::VALUE;
        } else if (m_part == Part::START) {
            BeginKey();
        }
    }

    void TakeOfValue(char character) {
        if (character == '[' || character == '{') {
            m_brackets.push_back({character == '{', m_depth});
            ++m_depth;
            m_part = character == '{' ? Part::KEY : Part::VALUE;
        } else if (character == ']' || character == '}') {
            Close();
        } else if (character == ',' && !m_brackets.empty() && m_brackets.back().isTable) {
            m_depth = m_brackets.back().depthAround + 1;
            m_part = Part::KEY;
        }
    }

    void Close() {
        if (!m_brackets.empty()) {
            m_depth = m_brackets.back().depthAround;
            m_brackets.pop_back();
        }
        m_part = Part::VALUE;
    }

    void BeginStatement() {
        m_part = Part::START;
        m_depth = m_headerDepth;
    }

    void BeginKey() {
        m_part = Part::KEY;
        ++m_depth;
    }

    // Skips the rest of a text, after its first quote. A text in triple quotes may hold line breaks, and may have one
    // or two quotes right before the closing three.
    void SkipQuoted(char quote) {
        const auto follows = [&](std::size_t quotes) {
            return m_text.substr(m_at, quotes) == std::string_view(quote == '"' ? R"(""")" : "'''").substr(0, quotes);
        };
        const bool isLong = follows(2);
        const std::size_t quotes = isLong ? 3 : 1;
        m_at += isLong ? 2 : 0;
        while (m_at < m_text.size() && !follows(quotes)) {
            if (!isLong && m_text[m_at] == '\n') {
                return;
            }
            m_at += quote == '"' && m_text[m_at] == '\\' ? 2 : 1;
        }
        m_at = std::min(m_at + quotes, m_text.size());
        for (int more = 0; isLong && more < 2 && follows(1); ++more) {
            ++m_at;
        }
    }

    [[nodiscard]] TextPlace PlaceOf(std::size_t at) const {
        const std::string_view before = m_text.substr(0, at);
        const std::size_t line = before.rfind('\n') + 1;  // 0 on the first one: npos wraps around
        const auto isFirstByte = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; };
        return {static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1,
                static_cast<std::size_t>(std::ranges::count_if(before.substr(line), isFirstByte)) + 1};
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    Part m_part = Part::START;
    std::size_t m_headerDepth = 0;
    std::size_t m_depth = 0;
    std::vector<Bracket> m_brackets;
};

}  // namespace

std::optional<TextPlace> FindTooDeep(std::string_view text) {
    return DepthScanner(text).FindTooDeep();
}

}  // namespace NS_STANDALONE
