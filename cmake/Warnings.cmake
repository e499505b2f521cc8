# The warnings that every target of this project is built with; none of them reaches those who link to us.
add_library(kx_warnings INTERFACE)
target_compile_options(kx_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<BOOL:${KX_WARNINGS_AS_ERRORS}>:-Werror>)
# g++ 12 takes "text" + std::string for overlapping copies when it inlines (bug 105651 of that compiler).
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(kx_warnings INTERFACE -Wno-restrict)
endif()
