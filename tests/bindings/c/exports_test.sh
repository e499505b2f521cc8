#!/usr/bin/env bash
# The library exports what exports.txt lists, which is what its header declares, under the name that programs ask for.
#   exports_test.sh LIBRARY HEADER EXPORTS
set -euo pipefail

exported=$(nm -D --defined-only "$1" | sed 's/.* //' | LC_ALL=C sort)
declared=$(grep -o '\bkx_[a-z0-9_]*(' "$2" | tr -d '(' | LC_ALL=C sort -u)
diff "$3" - <<<"$exported"
diff "$3" - <<<"$declared"
readelf -d "$1" | grep -qF '(SONAME)             Library soname: [libkx_c.so.1]'
