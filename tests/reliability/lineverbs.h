/// The verbs that work on lines, for tests of all of them.
#pragma once

#include <initializer_list>

inline constexpr auto RECORD = R"({"type":"NEIndex","record":{"reserved":0,"neId":7}})";

/// A verb, and a line from which it makes one line of output, with the configuration of `ProgramTest::Configure`.
struct LineVerb {
    const char* name;
    const char* command;
    const char* line;
};

inline constexpr std::initializer_list<LineVerb> LINE_VERBS = {{"decode", "decode", "NE=5"},
                                                               {"encode", "encode", RECORD},
                                                               {"check", "check --levels-only", "NE=5,XY=1"},
                                                               {"get", "get NE", "NE=5"},
                                                               {"filter", "filter --config config", "8 a"}};
