// Runs each conversion on a fixed number of inputs, so that callgrind counts the instructions: one dump for each, with
// its name. Prints the name and the number of calls of each. instructions.sh runs this program.
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include <valgrind/callgrind.h>

#include "rows.h"
#include "surroundings.h"

namespace {

using namespace NS_BENCH;

constexpr std::size_t CALLS = 500;

template <class Input, class Call>
void Count(const std::string& name, std::vector<Input> inputs, Call call) {
    inputs.resize(std::min(inputs.size(), CALLS));
    const auto walk = [&] {
        for (const Input& input : inputs) {
            call(input);
        }
    };
    walk();  // a first walk allocates the texts, and everything that is made only once
    CALLGRIND_START_INSTRUMENTATION;
    walk();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
    CALLGRIND_STOP_INSTRUMENTATION;
    std::cout << name << ' ' << inputs.size() << '\n';
}

}  // namespace

int main() try {
    const Corpus corpus;
    const Surroundings surroundings(corpus);
    NS_TEST::ForEachReaderOfText([&corpus]<class Record>(const NS_TEST::Reader<Record>& reader) {
        Count(NameOf(reader), IdentifiersFor(reader.name, corpus), ReadCall<Record>{reader.library, {}});
    });
    NS_TEST::ForEachReaderOfMap([&corpus]<class Record>(const NS_TEST::MapReader<Record>& reader) {
        Count(NameOf(reader), MapsOf(IdentifiersFor(reader.name, corpus)), MapReadCall<Record>{reader.library, {}});
    });
    NS_TEST::ForEachWriter([&corpus]<class Record>(const NS_TEST::Writer<Record>& writer) {
        Count(NameOf(writer), CasesFor(writer, corpus), WriteCall<Record>{writer.library, {}});
    });
    return 0;
} catch (const std::exception& error) {
    std::cerr << "kx_bench_instructions: " << error.what() << '\n';
    return 1;
}
