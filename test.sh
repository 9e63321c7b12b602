#!/bin/bash
# Builds everything and runs all tests. Arguments go to ctest: ./test.sh -R floors runs one test.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/scripts/packages"
"$root/scripts/install-packages" "${packagesToBuild[@]}" "${packagesToTest[@]}"

cmake -S "$root" --preset dev
cmake --build "$root/build/dev"

# A few seconds of fuzzing where clang and its fuzzer are there.
if command -v clang++ >/dev/null && compgen -G "$(clang++ -print-resource-dir)/lib/*/libclang_rt.fuzzer*" >/dev/null; then
    "$root/fuzz/run" 5 >"$root/build/fuzz.log" 2>&1 || { tail -n 40 "$root/build/fuzz.log"; exit 1; }
fi

# ctest's closing lines are the last thing printed, unless something was left out.
cd "$root"
status=0
ctest --preset dev --output-on-failure --no-tests=error --parallel 2 "$@" || status=$?
if grep -q "^No PostgreSQL server" build/dev/Testing/Temporary/LastTest.log; then
    echo "NOT TESTED: directories on a server. No PostgreSQL server program is here; install postgresql-15."
fi
exit "$status"
