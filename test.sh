#!/bin/bash
# Builds everything and runs all tests. Arguments go to ctest: ./test.sh -R floors runs one test.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/scripts/packages"
"$root/scripts/install-packages" "${packagesToBuild[@]}" "${packagesToTest[@]}"

cmake -S "$root" --preset dev
cmake --build "$root/build/dev"

# ctest's closing lines are the last thing printed.
cd "$root"
exec ctest --preset dev --output-on-failure --no-tests=error --parallel 2 "$@"
