#!/bin/bash
# Builds the editor and opens it on a sample database. Arguments go to dir-host: ./run.sh --help lists them.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
source "$root/scripts/packages"
"$root/scripts/install-packages" "${packagesToBuild[@]}"

cmake -S "$root" --preset release
cmake --build "$root/build/release"

programs=$root/build/release/bin
data=$root/build/sample-data
database=$data/Quorvanta/KELDAR+/Database/NewDB.mdb
if [[ ! -e $database ]]; then
    mkdir -p "$(dirname "$database")"
    rm -f "$database.new"*
    "$programs/dir-db" sample "$database.new" >/dev/null
    mv "$database.new" "$database"
fi

exec "$programs/dir-host" --data "$data" --config 1 --partition 1 --node 7 "$@"
