#!/usr/bin/env bash
# The completions of each shell offer what --help lists, and files where files are wanted. A shell that
# is not installed is left out.
#
#   tests/install/check-completions.sh BIN
#
# BIN is the folder of the programs.
set -euo pipefail
export LC_ALL=C
BIN=$(cd "$1" && pwd)
. "$(dirname "$0")/help.sh"
completions=$(cd "$(dirname "$0")/../../packaging/completions" && pwd)
failed=0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
touch kernel.xml top.ll project.db "two words.xml"
mkdir folder

# in_bash WORD...: what bash offers for the last word, a line each, in order
in_bash() {
    bash --norc --noprofile -c '
        . "$0/$1"
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        function=$(complete -p "$1" | sed "s/.*-F \([^ ]*\) .*/\1/")
        "$function"
        [ ${#COMPREPLY[@]} -eq 0 ] || printf "%s\n" "${COMPREPLY[@]}"
    ' "$completions/bash" "$@" | sort
}

# in_zsh WORD...: what the completion tells zsh of the command line in front of the last word, which are
# descriptions of its options and arguments; zsh itself makes its offer of them
in_zsh() {
    zsh -f -c '
        _arguments() { print -rl -- "$@" }
        _describe() { print -rl -- "${(@P)argv[-1]}" }
        program=$1
        if (( $# == 2 )); then
            . "$0/_$program"
            (( ! $+functions[_consolidator_inspect_commands] )) ||
                [ "$program" = consolidator ] || _consolidator_inspect_commands
        else
            . "$0/_$program" >/dev/null
            words=("${@:2}")
            _consolidator_inspect_arguments
        fi' "$completions/zsh" "$@" | sed -E 's/^\([^)]*\)//; s/^\*//; s/[:[].*//' | sort
}

# in_fish WORD...
in_fish() {
    fish --no-config -c 'source $argv[1]; complete -C "$argv[2]"' \
        "$completions/fish/$1.fish" "$*" | sed 's/\t.*//' | sort
}

# expect WHAT EXPECTED ACTUAL
expect() {
    if [ "$2" != "$3" ]; then
        printf 'FAILED: %s\n-- expected\n%s\n-- got\n%s\n' "$1" "$2" "$3" >&2
        failed=1
    fi
}

# expect_all SHELL WHAT WANTED OFFERED: each of the wanted lines is offered
expect_all() {
    local missing
    missing=$(comm -23 <(sort <<<"$3") <(sort <<<"$4"))
    if [ -n "$missing" ]; then
        printf 'FAILED: completion of %s for %s does not offer:\n%s\n' "$1" "$2" "$missing" >&2
        failed=1
    fi
}

lines() { printf '%s\n' "$@"; }

# fish offers long options where there is one; a short one next to it is not shown for "--".
long_only() { grep '^--' <<<"$1"; }

# expect_everything SHELL: all commands and options of both programs
expect_everything() {
    local shell=$1 program command
    for program in consolidator consolidator-inspect; do
        expect_all "$shell" "$program" "$(wanted "$shell" "$program")" "$("in_$shell" "$program" --)"
        for command in $(commands_of "$program"); do
            expect_all "$shell" "$program" "$command" "$("in_$shell" "$program" "")"
            expect_all "$shell" "$program $command" "$(wanted "$shell" "$program" "$command")" \
                "$("in_$shell" "$program" "$command" --)"
        done
    done
}

# wanted SHELL PROGRAM [COMMAND]: the options that the shell offers for "--"
wanted() {
    local shell=$1
    shift
    if [ "$shell" = zsh ]; then
        options_of "$@"
    else
        long_only "$(options_of "$@")"
    fi
}

expect_everything bash
# Options of one letter too, and none that there are not.
expect "options" "$(options_of consolidator | sort)" "$(in_bash consolidator -)"
for command in $(commands_of consolidator-inspect); do
    expect "options of $command" "$(options_of consolidator-inspect "$command" | sort)" \
        "$(in_bash consolidator-inspect "$command" -)"
done
every_file=$(lines folder kernel.xml project.db top.ll "two words.xml")
expect "a long option" --consolidated_file "$(in_bash consolidator -c --con)"
expect "database" "$every_file" "$(in_bash consolidator -f "")"
expect "begun name" project.db "$(in_bash consolidator --consolidated_file pr)"
expect "files of the usual name, and folders" "$(lines folder kernel.xml "two words.xml")" \
    "$(in_bash consolidator -a -k "")"
expect "any file where none has the usual name" "$every_file" "$(in_bash consolidator --ram "")"
expect "no files for a name" "" "$(in_bash consolidator -p "")"
expect "commands" "$(lines sqlite summary)" "$(in_bash consolidator-inspect s)"
expect "a database" "$every_file" "$(in_bash consolidator-inspect find -r "")"
expect "no files for a pattern" "" "$(in_bash consolidator-inspect find project.db "")"
expect "two databases" "$every_file" "$(in_bash consolidator-inspect diff project.db "")"
expect "not a third" "" "$(in_bash consolidator-inspect diff project.db project.db "")"
expect "formats" "$(lines json text)" "$(in_bash consolidator-inspect check --format "")"
expect "inputs" top.ll "$(in_bash consolidator-inspect check -l t | head -n 1)"
expect "inputs to merge" top.ll "$(in_bash consolidator-inspect merge --dry-run -l t | head -n 1)"
expect "options behind a flag" --werror "$(in_bash consolidator-inspect merge --dry-run "" | grep werror)"
expect "unknown command" "" "$(in_bash consolidator-inspect strange "")"

if command -v zsh >/dev/null; then
    for program in consolidator consolidator-inspect; do
        zsh -n "$completions/zsh/_$program" || failed=1
    done
    expect_everything zsh
else
    echo "zsh is not installed: its completions are not tested"
fi

if command -v fish >/dev/null; then
    export HOME=$work # it writes there
    for program in consolidator consolidator-inspect; do
        fish --no-config --no-execute "$completions/fish/$program.fish" || failed=1
    done
    expect_everything fish
    expect "fish: commands" "$(lines sqlite summary)" "$(in_fish consolidator-inspect s)"
    expect "fish: formats" "$(lines json text)" "$(in_fish consolidator-inspect check --format "")"
    expect "fish: database" project.db "$(in_fish consolidator -f pr)"
    expect "fish: no files for a name" "" "$(in_fish consolidator -p pr)"
else
    echo "fish is not installed: its completions are not tested"
fi
exit $failed
