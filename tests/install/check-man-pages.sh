#!/usr/bin/env bash
# The man pages render without a warning, and tell all that --help lists.
#
#   tests/install/check-man-pages.sh BIN PAGES
#
# BIN is the folder of the programs, PAGES that of the made pages.
set -euo pipefail
BIN=$1
pages=$2
. "$(dirname "$0")/help.sh"
failed=0

fail() {
    echo "FAILED: $*" >&2
    failed=1
}

# section PROGRAM TITLE: the page's lines from this heading to the next one of its kind, or a higher one
section() {
    awk -v title="$2" '
        /^\.S[HS] / { inside = 0 }
        /^\.S[HS] / && ($2 == title) { inside = 1 }
        inside' "$pages/$1.1" | sed 's/\\-/-/g'
}

# expect_options PROGRAM COMMAND TEXT: the text tells of each of the options
expect_options() {
    local option listed
    listed=$(options_of "$1" "$2")
    for option in $listed; do
        # An option of the whole program is not told again for each command.
        if [ -n "$2" ] && [ "$option" = --help ]; then
            continue
        fi
        grep --quiet --extended-regexp "^\\\\fB$option\\\\fR|, \\\\fB$option\\\\fR" <<<"$3" ||
            fail "$1.1 does not tell of ${2:+$2 }$option"
    done
}

for program in consolidator consolidator-inspect; do
    warnings=$(LC_ALL=C groff -man -Tutf8 -ww -z "$pages/$program.1" 2>&1)
    [ -z "$warnings" ] || fail "$warnings"
    expect_options "$program" "" "$(sed 's/\\-/-/g' "$pages/$program.1")"
    for command in $(commands_of "$program"); do
        text=$(section "$program" "$command")
        # It says that it takes the options of check too, which are not told twice.
        [ "$command" != merge ] || text+=$(section "$program" check)
        [ -n "$text" ] || fail "$program.1 does not tell of the command $command"
        expect_options "$program" "$command" "$text"
    done
done
exit $failed
