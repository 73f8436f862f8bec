#!/usr/bin/env bash
# Programs that are built for another machine make the same databases, to the byte, and read those of this
# one as it does.
#
#   tests/install/check-other-machine.sh OTHER OURS
#
# Both are folders of the programs; those in OTHER start their emulator themselves.
set -euo pipefail
other=$(cd "$1" && pwd)
ours=$(cd "$2" && pwd)
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/other" "$work/ours"
made=0

# run_in FOLDER BIN NAME OPTION...: makes NAME.db there, and leaves beside it what the programs say of it
run_in() {
    local bin=$2 name=$3
    cd "$1"
    shift 3
    "$bin/consolidator" -f "$name.db" "$@" >"$name.said" 2>&1 || echo "status $?" >>"$name.said"
    [ -f "$name.db" ] || return 0
    "$bin/consolidator-inspect" summary "$name.db" >>"$name.said" 2>&1 || echo "status $?" >>"$name.said"
}

# extend_in FOLDER BIN NAME: adds to NAME.extended, and exports what is in it then
extend_in() {
    cd "$1"
    "$2/consolidator" -f "$3.extended" -h "$source/examples/system.hier" >"$3.added" 2>&1 ||
        echo "status $?" >>"$3.added"
    "$2/consolidator-inspect" json "$3.extended" >"$3.json" 2>&1 || echo "status $?" >>"$3.json"
}

# make_database NAME OPTION...
make_database() {
    (run_in "$work/other" "$other" "$@")
    (run_in "$work/ours" "$ours" "$@")
    if [ -f "$work/ours/$1.db" ]; then
        made=$((made + 1))
        # Each goes on with what the other one has made.
        cp "$work/ours/$1.db" "$work/other/$1.extended"
        cp "$work/other/$1.db" "$work/ours/$1.extended"
        (extend_in "$work/other" "$other" "$1")
        (extend_in "$work/ours" "$ours" "$1")
    fi
}

examples=$source/examples
make_database example -c -p accelerator -d "$examples/program.dwarf" -h "$examples/system.hier" \
    -k "$examples/kernel.xml" -x "$examples/checksum_auxiliary.xml" -s "$examples/scale_rows.hls" \
    -s "$examples/checksum.hls" -l "$examples/top.ll" -r "$examples/ram_utilization.rpt"
# What was once found or thought of to be difficult. The kernels come first, where locations need some.
kinds=(hierarchy:-h hls:-s kernel_xml:-k auxiliary_xml:-x ll:-l ram:-r)
for kind in "${kinds[@]}"; do
    for file in "$source/fuzz/corpus/${kind%:*}"/* "$source/fuzz/regressions/${kind%:*}"/*; do
        [ -f "$file" ] || continue
        make_database "${kind%:*}-$(basename "$file")" -c -h "$examples/system.hier" \
            -s "$examples/scale_rows.hls" "${kind#*:}" "$file"
    done
done
# A database from anywhere, damaged ones among them.
for file in "$source"/fuzz/corpus/database/* "$source"/tests/inspect/mistakes/*/*.bin; do
    name=database-$(cksum <<<"$file" | cut -d' ' -f1)
    cp "$file" "$work/other/$name.db"
    cp "$file" "$work/ours/$name.db"
    make_database "$name" -d "$examples/program.dwarf"
done
diff --recursive "$work/other" "$work/ours"
[ "$made" -gt 100 ] || {
    echo "FAILED: only $made databases were made" >&2
    exit 1
}
echo "ok: $made databases are the same"
