/// Measures a call in walks over its inputs: the time, or the number of allocations.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "corpus.h"

namespace NS_BENCH {

/// How many allocations `operation` makes; none in the program that measures time, which does not count them.
std::optional<std::size_t> CountAllocations(const std::function<void()>& operation);

/// What is measured, with its inputs.
template <class Input>
struct Subject {
    std::string name;
    std::string group;  ///< the report's heading for it
    std::vector<Input> inputs;
    std::size_t bytes = 0;  ///< of identifiers, read or written in one walk
};

inline std::size_t BytesOf(const std::vector<std::string>& texts) {
    std::size_t bytes = 0;
    for (const std::string& text : texts) {
        bytes += text.size();
    }
    return bytes;
}

/// Measures `call`, a function object with its own texts and records. Every thread gets a copy of it.
template <class Input, class Call>
benchmark::internal::Benchmark* Add(const std::shared_ptr<const Subject<Input>>& subject, const std::string& variant,
                                    const Call& call) {
    const auto measure = [subject, call](benchmark::State& state) {
        Call own = call;
        const auto walk = [&] {
            for (const Input& input : subject->inputs) {
                benchmark::DoNotOptimize(own(input));
            }
        };
        walk();  // a first walk allocates the texts, and everything that is made only once
        const auto allocations = CountAllocations(walk);
        for ([[maybe_unused]] auto _ : state) {
            walk();
        }
        const auto calls = static_cast<double>(subject->inputs.size());
        using Counter = benchmark::Counter;
        state.counters["calls"] = Counter(calls, Counter::kAvgThreads);
        state.counters["bytes"] = Counter(static_cast<double>(subject->bytes) / calls, Counter::kAvgThreads);
        if (allocations) {
            state.counters["allocations"] = Counter(static_cast<double>(*allocations) / calls, Counter::kAvgThreads);
        }
        state.SetLabel(subject->group);
    };
    const std::string name = subject->name + "/" + variant;
    return benchmark::RegisterBenchmark(name.c_str(), measure)->UseRealTime();
}

/// Measures `library`, on one and on two threads, beside `literal`. Throws if they disagree about an input.
template <class Input, class Library, class Literal>
void AddPair(Subject<Input> subject, Library library, Literal literal) {
    for (const Input& input : subject.inputs) {
        const bool isSame = library(input) == literal(input);
        if (!isSame) {
            throw std::logic_error(subject.name + ": the literal counterpart gives something else");
        }
    }
    const auto shared = std::make_shared<const Subject<Input>>(std::move(subject));
    Add(shared, "library", library)->Threads(1)->Threads(2);
    Add(shared, "literal", literal)->Threads(1);
}

void AddConversions(const Corpus& corpus);
void AddLookUps(const Corpus& corpus);

}  // namespace NS_BENCH
