// Writes a header with the example of each kind of the catalogue. Tests of the library alone do not link the catalogue.
#include <fstream>

#include "catalogue/kinds.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    std::ofstream header(argv[1]);
    header << R"(#pragma once

#include <array>
#include <string_view>

namespace NS_TEST {

/// An identifier of each kind, as it is written.
inline constexpr auto EXAMPLES = std::to_array<std::string_view>({
)";
    for (const NS_KX::Kind* const kind : NS_KX::AllKinds()) {
        header << "    R\"x(" << kind->example << ")x\",\n";
    }
    header << R"(});

}  // namespace NS_TEST
)";
    header.close();
    return header ? 0 : 1;
}
