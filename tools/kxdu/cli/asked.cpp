#include "cli/asked.h"

#include <algorithm>
#include <array>
#include <string_view>

#include <unistd.h>

#include "cli/verb.h"
#include "lines/descriptor.h"
#include "lines/failure.h"
#include "lines/fileinuse.h"
#include "text/quoting.h"
#include "text/utf8.h"

namespace NS_KX::NS_KXDU {

namespace {

constexpr std::string_view BLANKS = " \t\n\v\f\r";

// Answers are rows of CSV and JSON, which hold UTF-8 only.
void RefuseWord(const std::string& word) {
    if (FindInvalidUtf8(word) != word.size()) {
        throw Failure(Cause::INPUT, Quoted(word) + " is not UTF-8");
    }
}

void ForEachWordOfInput(const std::function<void(const std::string&)>& take) {
    RefuseEndlessInput();
    std::array<char, 4096> block{};
    std::string word;
    const auto takeWord = [&] {
        if (!word.empty()) {
            RefuseWord(word);
            take(word);
            word.clear();
        }
    };
    for (;;) {
        const ssize_t size = ReadSome(STDIN_FILENO, block.data(), block.size());
        if (size == -1) {
            FailByErrno(Cause::INPUT, "standard input");
        }
        if (size == 0) {
            takeWord();
            return;
        }
        std::string_view text(block.data(), static_cast<std::size_t>(size));
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of(BLANKS), text.size());
            word.append(text.substr(0, end));
            if (word.size() > LONGEST_WORD) {
                throw Failure(Cause::INPUT, "a word on standard input is longer than " + std::to_string(LONGEST_WORD) +
                                                " bytes: " + Quoted(word));
            }
            text.remove_prefix(end);
            if (!text.empty()) {
                takeWord();
                text.remove_prefix(1);
            }
        }
    }
}

}  // namespace

void AddAsked(Verb& verb, const std::string& name, std::vector<std::string>& asked, const std::string& help,
              Presence presence) {
    VerbOption argument =
        verb.AddTexts(name, "", asked, help + "; - reads them from standard input, separated by blanks or line ends");
    if (presence == Presence::REQUIRED) {
        argument.Required();
    }
}

void RefuseEndlessInput() {
    for (const char* const stream : {"/dev/stdout", "/dev/stderr"}) {
        if (IsSameFile(stream, "/dev/stdin")) {
            throw Failure(Cause::INPUT, "standard input is the file that the answers are written to");
        }
    }
}

void ForEachAsked(const std::vector<std::string>& asked, const std::function<void(const std::string&)>& take) {
    for (const std::string& argument : asked) {
        if (argument == "-") {
            ForEachWordOfInput(take);
        } else {
            RefuseWord(argument);
            take(argument);
        }
    }
}

}  // namespace NS_KX::NS_KXDU
