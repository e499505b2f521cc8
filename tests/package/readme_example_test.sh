#!/usr/bin/env bash
# Compares the C++ example of the README with the one of examples/, which is compiled and run.
#   readme_example_test.sh SOURCE_FOLDER
set -euo pipefail

diff <(sed -n '/^```cpp$/,/^```$/{/^```/d;p}' "$1/README.md") \
     <(sed '/^\/\/ prints: /d' "$1/examples/read_and_write_a_port.cpp")
