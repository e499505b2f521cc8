#include "cli/helptext.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "cli/wrapping.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr std::size_t COMMAND_INDENT = 2;

// The size of the lead that `text` begins with; 0 if it has none.
std::size_t LeadSize(std::string_view text) {
    if (text.starts_with("- ")) {
        return 2;
    }
    const std::size_t gap = text.find("  ");
    return gap == std::string_view::npos ? 0 : text.find_first_not_of(' ', gap);
}

class Splitter {
public:
    std::vector<HelpPart> Split(std::string_view help) {
        while (!help.empty()) {
            const std::size_t end = std::min(help.find('\n'), help.size());
            Take(help.substr(0, end));
            help.remove_prefix(std::min(end + 1, help.size()));
        }
        return std::move(m_parts);
    }

private:
    void Take(std::string_view line) {
        const std::size_t indent = std::min(line.find_first_not_of(' '), line.size());
        const std::string_view text = line.substr(indent);
        if (text.empty()) {
            m_areExamples = false;
            m_parts.emplace_back();
        } else if (IsContinued(indent)) {
            m_parts.back().text.append(" ").append(text);
        } else {
            Begin(indent, text);
        }
    }

    [[nodiscard]] bool IsContinued(std::size_t indent) const {
        if (m_parts.empty() || m_parts.back().text.empty() || m_parts.back().isCommand) {
            return false;
        }
        const HelpPart& part = m_parts.back();
        const bool isAligned = indent == part.indent + part.lead.size();
        return isAligned && (indent == 0 || !part.lead.empty());
    }

    void Begin(std::size_t indent, std::string_view text) {
        HelpPart part;
        part.indent = indent;
        part.isCommand = m_areExamples && indent == COMMAND_INDENT;
        const std::size_t leadSize = indent == 0 || part.isCommand ? 0 : LeadSize(text);
        part.lead = text.substr(0, leadSize);
        part.text = text.substr(leadSize);
        m_areExamples = m_areExamples || text == "Example:" || text == "Examples:";
        m_parts.push_back(std::move(part));
    }

    std::vector<HelpPart> m_parts;
    bool m_areExamples = false;
};

std::string WrapPart(const HelpPart& part, std::size_t width) {
    const std::string head = std::string(part.indent, ' ') + part.lead;
    if (part.isCommand) {
        return head + part.text;
    }
    std::istringstream words(part.text);
    return Wrapped(head, {std::istream_iterator<std::string>(words), {}}, width);
}

}  // namespace

std::vector<HelpPart> SplitHelp(std::string_view help) {
    return Splitter().Split(help);
}

std::string WrapHelp(std::string_view help, std::size_t width) {
    std::string text;
    for (const HelpPart& part : SplitHelp(help)) {
        text.append(text.empty() ? "" : "\n").append(WrapPart(part, width));
    }
    return text;
}

}  // namespace NS_KX::NS_KXDU
