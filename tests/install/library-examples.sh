#!/usr/bin/env bash
# Makes programs of the C++ examples in docs/library.md:
#
#   tests/install/library-examples.sh FOLDER
#
#   FOLDER/programN.cpp   each that is a whole program
#   FOLDER/pieces.cpp     all others, one behind the other
#   FOLDER/pieces.output  what the pieces print: their lines that begin with "// "
set -euo pipefail
folder=$1
document=$(cd "$(dirname "$0")/../.." && pwd)/docs/library.md
mkdir -p "$folder"

awk -v folder="$folder" '
    /^```cpp$/ { inside = 1; block = ""; next }
    /^```$/ && inside {
        inside = 0
        if (block ~ /int main\(/) {
            printf "%s", block >(folder "/program" ++programs ".cpp")
        } else {
            pieces = pieces block
        }
        next
    }
    inside { block = block $0 "\n" }
    END {
        file = folder "/pieces.cpp"
        print "#include <fstream>\n#include <iostream>" >file
        count = split(pieces, lines, "\n")
        for (i = 1; i <= count; ++i) {
            if (lines[i] ~ /^#include/) print lines[i] >file
        }
        print "int main() {" >file
        for (i = 1; i <= count; ++i) {
            if (lines[i] ~ /^\/\/ /) print substr(lines[i], 4) >(folder "/pieces.output")
            else if (lines[i] !~ /^#include/) print lines[i] >file
        }
        print "}" >file
    }' "$document"
