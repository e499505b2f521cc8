#include "cli/asked.h"

#include <cstdio>
#include <iomanip>
#include <iostream>

#include "cli/verb.h"
#include "lines/failure.h"
#include "text/text.h"

namespace NS_KX::NS_KXDU {

namespace {

void ForEachWordOfInput(const std::function<void(const std::string&)>& take) {
    for (std::string word; std::cin >> std::setw(LONGEST_WORD + 1) >> word;) {
        if (word.size() > LONGEST_WORD) {
            throw Failure(Cause::USAGE, "a word on standard input is longer than " + std::to_string(LONGEST_WORD) +
                                            " bytes: " + Quoted(word));
        }
        take(word);
    }
    if (std::ferror(stdin) != 0) {
        throw Failure(Cause::USAGE, "standard input cannot be read");
    }
}

}  // namespace

void AddAsked(Verb& verb, const std::string& name, std::vector<std::string>& asked, const std::string& help) {
    verb.AddTexts(name, "", asked, help + "; - reads them from standard input, separated by blanks or line ends")
        .Required();
}

void ForEachAsked(const std::vector<std::string>& asked, const std::function<void(const std::string&)>& take) {
    for (const std::string& argument : asked) {
        if (argument == "-") {
            ForEachWordOfInput(take);
        } else {
            take(argument);
        }
    }
}

}  // namespace NS_KX::NS_KXDU
