#!/usr/bin/env bash
# Makes the Debian packages, checks them with lintian, and tries them in a bare Debian. They are in build/packages/debs
# afterwards. Wants to be root, for the bare Debian.
#   scripts/packages.sh [--only-make]      --only-make: neither checks nor tries them
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/count.sh

scripts/install-deps.sh tool postgresql python packages
scripts/build.sh packages
debs=build/packages/debs
rm -rf "$debs"
if ! cpack --config build/packages/CPackConfig.cmake -B "$debs" >build/packages.cpack.log 2>&1; then
    cat build/packages.cpack.log >&2
    echo "packages: cpack failed" >&2
    exit 1
fi
rm -rf "$debs/_CPack_Packages"
(cd "$debs" && dpkg-scanpackages . >Packages 2>/dev/null)  # makes the folder a source for apt
ls "$debs"/*.deb
if [ "${1-}" = --only-make ]; then
    exit
fi

# The licence is the owner's to choose, so no package has a copyright file yet.
if lintian --allow-root --suppress-tags no-copyright-file --fail-on error,warning "$debs"/*.deb; then
    passed
else
    echo "packages: lintian complains"
    failed
fi
count_of scripts/bare.sh --with "$debs" tests/package/packages_test.sh
finish
