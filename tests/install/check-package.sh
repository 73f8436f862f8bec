#!/usr/bin/env bash
# Installs packages, uses them from where they are then, and removes them.
#
#   tests/install/check-package.sh BUILD ROOT PACKAGE...
#
# BUILD is the tree that the packages were made of, whose programs must do the same as the installed
# ones. ROOT is "/", or a folder to install into, which gets a package database of its own; what the
# packages depend on is then that of this machine. Needs the rights of root, or fakeroot.
set -euo pipefail
export PATH=$PATH:/usr/sbin:/sbin # dpkg wants tools from there

build=$1
root=${2%/}
shift 2
packages=("$@")
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$build/package-test
names=(consolidator libconsolidator-dev)
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# Debian's tools for the given root
in_root() {
    local program=$1
    shift
    if [ -z "$root" ]; then
        "$program" "$@"
    elif [ "$program" = dpkg ]; then
        dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless "$@"
    else
        "$program" --admindir="$root/var/lib/dpkg" "$@"
    fi
}

# installed PACKAGE: whether anything of it is there
installed() {
    local state
    state=$(in_root dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null || true)
    [ -n "$state" ] && [ "$state" != not-installed ]
}

for name in "${names[@]}"; do
    ! installed "$name" || fail "$name is installed already"
done
if [ -n "$root" ]; then
    mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info"
    touch "$root/var/lib/dpkg/status"
fi
# existing: which of the packages' files and folders there are
existing() {
    local path
    for package in "${packages[@]}"; do
        dpkg-deb --fsys-tarfile "$package" | tar --list
    done | sort --unique | while read -r path; do
        if [ -e "$root/$path" ]; then
            echo "$path"
        fi
    done
}
existing >"$work/before"
trap 'in_root dpkg --purge "${names[@]}" >/dev/null 2>&1 || true' EXIT

# Small systems leave documents and man pages out.
in_root dpkg --path-include='/*' --install "${packages[@]}" >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "not installed"
}
for name in "${names[@]}"; do
    installed "$name" || fail "$name is not installed"
    changed=$(in_root dpkg --verify "$name")
    [ -z "$changed" ] || fail "$name is not as it was packed: $changed"
done
echo "ok: installed"

# inspect_by COMMAND: what a command says of the example project, and check of a mistake; then its exit
# status
mistake=$source/tests/inspect/mistakes/bit_index_too_large
inspect_by() {
    local status=0 arguments=(accelerator.bin)
    case $1 in
    kernel) arguments+=(scale_rows) ;;
    find) arguments+=('s?m') ;;
    at) arguments+=(0x1a01 163) ;;
    break) arguments+=(scale_rows.cpp:14) ;;
    check)
        arguments=(-h system.hier -k kernel.xml -s blend.hls -l top.ll)
        cd "$mistake"
        ;;
    merge)
        arguments=(-f merged.bin -h "$source/examples/system.hier" -k "$source/examples/kernel.xml"
            -s "$source/examples/scale_rows.hls" -l "$source/examples/top.ll")
        ;;
    sqlite) arguments+=(accelerator.sqlite) ;;
    diff) arguments+=(accelerator.bin) ;;
    esac
    "$bin/consolidator-inspect" "$1" "${arguments[@]}" || status=$?
    echo "status $status"
}

# outputs BIN DIRECTORY: leaves there what both programs make of the example project
outputs() {
    local bin=$1 command
    mkdir -p "$2"
    (
        cd "$2"
        "$bin/consolidator" --help | sed 1d >help
        "$bin/consolidator" --version >version
        "$bin/consolidator" -c -f accelerator.bin -p accelerator \
            -d "$source/examples/program.dwarf" -h "$source/examples/system.hier" \
            -k "$source/examples/kernel.xml" -x "$source/examples/checksum_auxiliary.xml" \
            -s "$source/examples/scale_rows.hls" -s "$source/examples/checksum.hls" \
            -l "$source/examples/top.ll" -r "$source/examples/ram_utilization.rpt"
        "$bin/consolidator" -f accelerator.bin -j accelerator.json
        "$bin/consolidator" -f accelerator.bin -u accelerator.dwarf
        "$bin/consolidator-inspect" --version >inspect-version
        "$bin/consolidator-inspect" --help >inspect-help
        for command in $(commands_of consolidator-inspect); do
            (inspect_by "$command") >"$command" 2>&1
        done
    )
}

BIN=$build/bin
. "$source/tests/install/help.sh"
outputs "$build/bin" "$work/built"
outputs "$root/usr/bin" "$work/installed"
diff --recursive "$work/built" "$work/installed" || fail "installed programs do something else"
[ -s "$work/installed/accelerator.json" ] || fail "no JSON"
for command in $(commands_of consolidator-inspect); do
    status=0
    [ "$command" != check ] || status=1 # of a mistake
    [ "$(tail -n 1 "$work/installed/$command")" = "status $status" ] || fail "$command ends otherwise"
done
sed '$d' "$work/installed/check" | diff "$mistake/expected" - || fail "check says something else"
echo "ok: both programs"

completions=$source/packaging/completions
for program in consolidator consolidator-inspect; do
    gzip --test "$root/usr/share/man/man1/$program.1.gz"
    cmp "$completions/bash/$program" "$root/usr/share/bash-completion/completions/$program"
    cmp "$completions/zsh/_$program" "$root/usr/share/zsh/vendor-completions/_$program"
    cmp "$completions/fish/$program.fish" "$root/usr/share/fish/vendor_completions.d/$program.fish"
done
echo "ok: man pages and completions"

# The libraries, as a user's project finds them. In a root folder it has to be told where that is.
for example in read-database edit-kernel-xml; do
    cmake -S "$root/usr/share/doc/consolidator/examples/$example" -B "$work/$example" \
        ${root:+-DCMAKE_PREFIX_PATH="$root/usr"} >"$work/log" 2>&1 &&
        cmake --build "$work/$example" >>"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "the libraries are not of use to $example"
    }
done
"$work/read-database/read-database" "$work/installed/accelerator.bin" |
    diff "$source/tests/install/read-database.expected" - || fail "the library reads something else"
"$work/edit-kernel-xml/edit-kernel-xml" "$source/examples/kernel.xml" scale_rows blend |
    grep --quiet '<kernel name="blend"' || fail "the kernel description is not changed"
echo "ok: libraries"

in_root dpkg --purge "${names[@]}" >"$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "not removed"
}
for name in "${names[@]}"; do
    ! installed "$name" || fail "$name is still installed"
done
existing >"$work/after"
left=$(comm -13 "$work/before" "$work/after")
[ -z "$left" ] || fail "left behind: $left"
echo "ok: removed"
