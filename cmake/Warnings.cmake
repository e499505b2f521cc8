# The warnings that every target of this project is built with; none of them reaches those who link to us.
add_library(kx_warnings INTERFACE)
target_compile_options(kx_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror)
