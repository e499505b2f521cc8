#include "cli/asked.h"

#include <cstdio>
#include <iostream>

#include "cli/verb.h"
#include "failure.h"

namespace NS_KXDU {

void AddAsked(Verb& verb, const std::string& name, std::vector<std::string>& asked, const std::string& help) {
    verb.AddTexts(name, "", asked, help + "; - for those on standard input, between blanks or line ends").Required();
}

std::vector<std::string> AllAsked(const std::vector<std::string>& asked) {
    std::vector<std::string> all;
    for (const std::string& argument : asked) {
        if (argument != "-") {
            all.push_back(argument);
            continue;
        }
        for (std::string word; std::cin >> word;) {
            all.push_back(word);
        }
        if (std::ferror(stdin) != 0) {
            throw Failure(ExitCode::USAGE, "standard input cannot be read");
        }
    }
    return all;
}

}  // namespace NS_KXDU
