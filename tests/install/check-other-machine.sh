#!/usr/bin/env bash
# Programs that are built for another machine make the same databases, to the byte, and read those of this
# one as it does.
#
#   tests/install/check-other-machine.sh OTHER OURS
#
# Both are folders of the programs; those in OTHER start their emulator themselves.
set -euo pipefail
other=$1
ours=$2
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/other" "$work/ours"
made=0

# make_database NAME OPTION...: by both, as NAME.db, then extended by the other one with what it holds
make_database() {
    local name=$1
    shift
    "$other/consolidator" -f "$work/other/$name.db" "$@" >"$work/other/$name.said" 2>&1 || true
    "$ours/consolidator" -f "$work/ours/$name.db" "$@" >"$work/ours/$name.said" 2>&1 || true
    if [ ! -f "$work/ours/$name.db" ]; then
        return
    fi
    made=$((made + 1))
    # Each reads what the other one made.
    cp "$work/ours/$name.db" "$work/other/$name.extended"
    cp "$work/other/$name.db" "$work/ours/$name.extended"
    "$other/consolidator" -f "$work/other/$name.extended" -h "$source/examples/system.hier" || true
    "$ours/consolidator" -f "$work/ours/$name.extended" -h "$source/examples/system.hier" || true
    "$other/consolidator-inspect" json "$work/other/$name.extended" >"$work/other/$name.json" || true
    "$ours/consolidator-inspect" json "$work/ours/$name.extended" >"$work/ours/$name.json" || true
} 2>/dev/null

examples=$source/examples
make_database example -c -p accelerator -d "$examples/program.dwarf" -h "$examples/system.hier" \
    -k "$examples/kernel.xml" -x "$examples/checksum_auxiliary.xml" -s "$examples/scale_rows.hls" \
    -s "$examples/checksum.hls" -l "$examples/top.ll" -r "$examples/ram_utilization.rpt"
# What was once found or thought of to be difficult. The kernels come first, where locations need some.
kinds=(hierarchy:-h hls:-s kernel_xml:-k auxiliary_xml:-x ll:-l ram:-r)
for kind in "${kinds[@]}"; do
    for file in "$source/fuzz/corpus/${kind%:*}"/*; do
        make_database "${kind%:*}-$(basename "$file")" -c -h "$examples/system.hier" \
            -s "$examples/scale_rows.hls" "${kind#*:}" "$file"
    done
done
# A database from anywhere, damaged ones among them.
for file in "$source"/fuzz/corpus/database/* "$source"/tests/inspect/mistakes/*/*.bin; do
    name=database-$(cksum <<<"$file" | cut -d' ' -f1)
    cp "$file" "$work/other/$name.db"
    cp "$file" "$work/ours/$name.db"
    make_database "$name" -a
done
diff --recursive --brief "$work/other" "$work/ours"
[ "$made" -gt 100 ]
echo "ok: $made databases are the same"
