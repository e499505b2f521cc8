// The yardstick for programs that read or write JSON lines: reads a file of them with simdjson's on-demand interface,
// takes every key and every value, and prints how many there were.
#include <cstdint>
#include <cstdio>
#include <exception>
#include <utility>

#include <simdjson.h>

namespace {

namespace ondemand = simdjson::ondemand;

struct Taken {
    std::uint64_t values = 0;
    std::uint64_t sum = 0;  // of all values, so that the compiler drops none
};

void Take(ondemand::value value, Taken& taken);

void TakeMembers(ondemand::object object, Taken& taken) {
    for (auto member : object) {
        ondemand::field field;
        if (const auto error = std::move(member).get(field); error != simdjson::SUCCESS) {
            throw simdjson::simdjson_error(error);
        }
        taken.sum += field.unescaped_key().value().size();
        Take(field.value(), taken);
    }
}

void Take(ondemand::value value, Taken& taken) {
    ++taken.values;
    switch (value.type()) {
        case ondemand::json_type::object:
            TakeMembers(value.get_object(), taken);
            break;
        case ondemand::json_type::array:
            throw simdjson::simdjson_error(simdjson::INCORRECT_TYPE);  // records have none
        case ondemand::json_type::number:
            taken.sum += static_cast<std::uint64_t>(value.get_int64().value());
            break;
        case ondemand::json_type::string:
            taken.sum += value.get_string().value().size();
            break;
        case ondemand::json_type::boolean:
            taken.sum += value.get_bool().value() ? 1U : 0U;
            break;
        case ondemand::json_type::null:
            break;
    }
}

}  // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::fputs("usage: kx_bench_jsonread FILE\n", stderr);
        return 2;
    }
    const simdjson::padded_string text = simdjson::padded_string::load(argv[1]);
    ondemand::parser parser;
    ondemand::document_stream documents = parser.iterate_many(text);
    Taken taken;
    for (auto document : documents) {
        TakeMembers(document.get_object(), taken);
    }
    std::printf("%llu values, checksum %llu\n", static_cast<unsigned long long>(taken.values),
                static_cast<unsigned long long>(taken.sum));
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "kx_bench_jsonread: %s\n", error.what());
    return 1;
}
