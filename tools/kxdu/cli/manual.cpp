#include "cli/manual.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "cli/helptext.h"

namespace NS_KX::NS_KXDU {

namespace {

// Characters that troff would change or obey.
std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
            case '\\':
                escaped += "\\e";
                break;
            case '-':
                escaped += "\\-";
                break;
            case '\'':
                escaped += "\\(aq";
                break;
            case '`':
                escaped += "\\(ga";
                break;
            case '^':
                escaped += "\\(ha";
                break;
            case '~':
                escaped += "\\(ti";
                break;
            case '"':
                escaped += "\\(dq";
                break;
            default:
                escaped += character;
        }
    }
    return escaped.starts_with('.') ? "\\&" + escaped : escaped;
}

std::string Bold(std::string_view text) {
    return "\\fB" + Escaped(text) + "\\fR";
}

std::string Italic(std::string_view text) {
    return "\\fI" + Escaped(text) + "\\fR";
}

std::string Upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char character) {
        return 'a' <= character && character <= 'z' ? character - 'a' + 'A' : character;
    });
    return text;
}

// The parts of a help text by the section that they belong to.
struct Sections {
    std::vector<HelpPart> description;
    std::vector<HelpPart> examples;
    std::vector<HelpPart> exitCodes;
};

Sections Sorted(std::string_view help) {
    constexpr std::string_view EXIT_CODE = "Exit code: ";
    Sections sections;
    std::vector<HelpPart>* section = &sections.description;
    for (HelpPart& part : SplitHelp(help)) {
        if (part.text == "Examples:" || part.text == "Example:") {
            section = &sections.examples;
        } else if (part.text.empty()) {
            section = &sections.description;
            section->push_back(std::move(part));
        } else if (part.text.starts_with(EXIT_CODE)) {
            section = &sections.exitCodes;
            part.text.erase(0, EXIT_CODE.size());
            section->push_back(std::move(part));
        } else {
            section->push_back(std::move(part));
        }
    }
    return sections;
}

class Page {
public:
    Page(const DescribedVerb& verb, const DescribedVerb& tool, const std::string& version)
        : m_verb(verb), m_tool(tool), m_sections(Sorted(verb.help)) {
        Line(".TH " + Upper(Escaped(ManualName(verb))) + " 1 \"\" \"" + Escaped(version) + "\" \"User Commands\"");
        Line(".nh");  // a command or a name must not be hyphenated
        Line(".ad l");
    }

    std::string Text() {
        Section("NAME");
        Line(Escaped(ManualName(m_verb)) + " \\- " + Escaped(m_verb.description));
        AddSynopsis();
        AddDescription();
        AddOptions("ARGUMENTS", m_verb.arguments);
        AddOptions("OPTIONS", m_verb.options);
        AddVerbs();
        AddVariables();
        AddParts("EXIT STATUS", m_sections.exitCodes);
        AddParts("EXAMPLES", m_sections.examples);
        AddSeeAlso();
        return std::move(m_text);
    }

private:
    void Line(const std::string& line) { m_text.append(line).append("\n"); }
    void Section(const std::string& name) { Line(".SH " + name); }

    void AddSynopsis() {
        Section("SYNOPSIS");
        std::string line = Bold(m_verb.name) + " [" + Italic("OPTIONS") + "]";
        for (const DescribedOption& argument : m_verb.arguments) {
            const std::string name = Italic(argument.value) + (argument.isRepeated ? "..." : "");
            line += argument.isRequired ? " " + name : " [" + name + "]";
        }
        Line(line + (m_verb.verbs.empty() ? "" : " " + Italic("VERB")));
    }

    void AddDescription() {
        Section("DESCRIPTION");
        Line(Escaped(m_verb.description) + ".");
        AddText(m_sections.description);
    }

    void AddParts(const std::string& section, const std::vector<HelpPart>& parts) {
        if (!parts.empty()) {
            Section(section);
            AddText(parts);
        }
    }

    void AddText(const std::vector<HelpPart>& parts) {
        for (const HelpPart& part : parts) {
            if (!part.text.empty()) {
                AddPart(part);
            }
        }
    }

    void AddPart(const HelpPart& part) {
        const std::string text = Escaped(part.text);
        if (part.isCommand) {
            Line(".PP\n.EX\n" + text + "\n.EE");
        } else if (part.lead == "- ") {
            Line(".IP \\(bu 2\n" + text);
        } else if (!part.lead.empty()) {
            Line(".TP\n" + Bold(part.lead.substr(0, part.lead.find_last_not_of(' ') + 1)) + "\n" + text);
        } else if (part.indent != 0) {
            Line(".RS 4\n" + text + "\n.RE");
        } else {
            Line(".PP\n" + text);
        }
    }

    void AddOptions(const std::string& section, const std::vector<DescribedOption>& options) {
        if (options.empty()) {
            return;
        }
        Section(section);
        for (const DescribedOption& option : options) {
            std::string names;
            for (const std::string& name : option.names) {
                names += (names.empty() ? "" : ", ") + (name.starts_with('-') ? Bold(name) : Italic(name));
            }
            const bool hasValue = !option.value.empty() && option.value != option.names.front();
            Line(".TP\n" + names + (hasValue ? " " + Italic(option.value) : ""));
            Line(Escaped(option.description) + ".");
        }
    }

    void AddVerbs() {
        if (m_verb.verbs.empty()) {
            return;
        }
        Section("VERBS");
        for (const DescribedVerb& verb : m_verb.verbs) {
            Line(".TP\n" + Bold(ManualName(verb)) + "(1)\n" + Escaped(verb.description) + ".");
        }
    }

    void AddVariables() {
        bool isFirst = true;
        for (const DescribedOption* const option : WithVariable()) {
            if (isFirst) {
                Section("ENVIRONMENT");
                isFirst = false;
            }
            Line(".TP\n" + Bold(option->variable) + "\nThe value of " + Bold(option->names.back()) +
                 ", if the command line gives none.");
        }
    }

    [[nodiscard]] std::vector<const DescribedOption*> WithVariable() const {
        std::vector<const DescribedOption*> found;
        for (const auto* const options : {&m_verb.options, &m_verb.arguments}) {
            for (const DescribedOption& option : *options) {
                if (!option.variable.empty()) {
                    found.push_back(&option);
                }
            }
        }
        return found;
    }

    void AddSeeAlso() {
        Section("SEE ALSO");
        std::string line;
        for (const DescribedVerb* const verb : Flattened(m_tool)) {
            if (verb->name != m_verb.name) {
                line += (line.empty() ? "" : ", ") + Bold(ManualName(*verb)) + "(1)";
            }
        }
        Line(line);
    }

    const DescribedVerb& m_verb;
    const DescribedVerb& m_tool;
    Sections m_sections;
    std::string m_text;
};

}  // namespace

std::string ManualName(const DescribedVerb& verb) {
    std::string name = verb.name;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string ManualPage(const DescribedVerb& verb, const DescribedVerb& tool, const std::string& version) {
    return Page(verb, tool, version).Text();
}

}  // namespace NS_KX::NS_KXDU
