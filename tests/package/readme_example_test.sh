#!/usr/bin/env bash
# The C++ example of the README is the one of examples/ that is compiled and run, word for word.
#   readme_example_test.sh SOURCE_FOLDER
set -euo pipefail

diff <(sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$1/README.md") \
     <(sed '/^\/\/ prints: /d' "$1/examples/read_and_write_a_port.cpp")
