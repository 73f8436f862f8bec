#!/usr/bin/env bash
# What --version says of how the programs are linked is how they are.
#
#   tests/install/check-linkage.sh BIN
#
# BIN is the folder of the programs.
set -euo pipefail
bin=$1
said=$("$bin/consolidator-inspect" --version)
failed=0

# expect PROGRAM NAME LIBRARY: the line of the program calls NAME shared if the program needs LIBRARY, and
# static if not
expect() {
    local kind=static
    if readelf --dynamic "$bin/$1" | grep --quiet "NEEDED.*\[$3"; then
        kind=shared
    fi
    if ! grep --quiet --extended-regexp "^$1: .*$2 ([0-9.]+ )?$kind" <<<"$said"; then
        echo "FAILED: $1 has $2 $kind, and --version says: $(grep "^$1:" <<<"$said")" >&2
        failed=1
    fi
}

expect consolidator 'C\+\+ library' libstdc++
expect consolidator Boost libboost_program_options
expect consolidator Expat libexpat
expect consolidator-inspect 'C\+\+ library' libstdc++
expect consolidator-inspect RE2 libre2
expect consolidator-inspect SQLite libsqlite3
expect consolidator-inspect Expat libexpat
exit $failed
