#!/usr/bin/env bash
# Looks in a built program for the protections of cmake/Hardening.cmake.
#
#   tests/hardening/check.sh PROGRAM [fortified]
#
# "fortified": the program also calls checked forms of the library's functions. Only optimised builds
# have those, and only of programs that copy into arrays of fixed size.
set -euo pipefail
export LC_ALL=C

program=$1
missing=0

# expect WHAT PATTERN, and what readelf tells on standard input
expect() {
    if grep --quiet --extended-regexp "$2"; then
        echo "present: $1"
    else
        echo "MISSING: $1"
        missing=1
    fi
}

headers=$(readelf --wide --file-header --program-headers "$program")
dynamic=$(readelf --wide --dynamic "$program")
symbols=$(readelf --wide --dyn-syms "$program")

expect "position-independent code" 'Type: +DYN' <<<"$headers"
expect "position-independent program" 'FLAGS_1.* PIE' <<<"$dynamic"
expect "stack without execution" 'GNU_STACK .* RW ' <<<"$headers"
expect "read-only relocations" 'GNU_RELRO' <<<"$headers"
expect "relocations made at the start" 'FLAGS_1.* NOW' <<<"$dynamic"
expect "stack protector" '__stack_chk_fail' <<<"$symbols"
if [ "${2:-}" = fortified ]; then
    expect "checked library functions" '__[a-z]+_chk(@|$)' <<<"$symbols"
fi
exit $missing
