# The warnings of every target of this project. Projects that link to it do not get them.
add_library(kx_warnings INTERFACE)
target_compile_options(kx_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${KX_WARNINGS_AS_ERRORS}>:-Werror>)
# g++ 12 reports overlapping copies for an inlined "text" + std::string (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kx_warnings INTERFACE -Wno-restrict)
endif()
