# What the programs' --help lists, for the tests beside this file, which source it. BIN is the folder of
# the programs.

# commands_of PROGRAM: the commands, a line each; none for a program without
commands_of() {
    "$BIN/$1" --help | sed -n '/^Commands:/,$p' | sed -nE 's/^  ([a-z]+)( .*)?$/\1/p'
}

# options_of PROGRAM [COMMAND]: the options, short and long, a line each
options_of() {
    "$BIN/$1" ${2:+"$2"} --help |
        sed -nE 's/^  (-[A-Za-z])?( \[ |,)?(--[A-Za-z][A-Za-z_-]*)?.*/\1\n\3/p' | grep '^-'
}

# Without a word of help there would be nothing to look for.
[ -n "$(options_of consolidator)" ] && [ -n "$(commands_of consolidator-inspect)" ] || {
    echo "FAILED: no help from the programs in $BIN" >&2
    exit 1
}
