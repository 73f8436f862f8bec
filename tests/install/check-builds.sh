#!/usr/bin/env bash
# Builds the project in surroundings unlike those that it is developed in.
#
#   tests/install/check-builds.sh elsewhere|subdirectory BUILD
#
# elsewhere: from a folder with blanks and umlauts in its name that may not be written to, with Ninja, and
# without a build type; if root runs it, by another user and without a network. Then installed with DESTDIR
# and used from there. What cannot be tried is said.
# subdirectory: the library as a part of another project, whose settings and targets stay what they are.
#
# BUILD is a built tree, whose compiler is used; everything goes below BUILD/install-tests.
set -euo pipefail
kind=$1
build=$2
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$build/install-tests/builds-$kind
compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")
rm -rf "$work"
mkdir -p "$work"

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# quietly COMMAND...: shows the output only if the command fails
quietly() {
    "$@" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        fail "$*"
    }
}

# without_warnings FILE: of CMake or a compiler
without_warnings() {
    if grep --quiet --ignore-case 'warning' "$1"; then
        cat "$1" >&2
        fail "a warning"
    fi
}

elsewhere() {
    # Where anybody may go.
    local place
    place=$(mktemp -d -p /var/tmp)
    # shellcheck disable=SC2064 # now
    trap "chmod -R u+w '$place'; rm -rf '$place'" EXIT
    chmod 755 "$place"
    local copy="$place/zwei Wörter/quelle" tree="$place/gebäut, dort" staged="$place/ziel ordner" run=()
    mkdir -p "$copy" "$tree" "$staged"
    tar --create --directory "$source" --exclude=./.git --exclude='./build*' --exclude=./out \
        --exclude=./fuzz --exclude=./tests . |
        tar --extract --directory "$copy"
    chmod -R a-w,a+rX "$copy"
    local options=("-DCMAKE_CXX_COMPILER=$compiler" -DBUILD_TESTING=OFF -DCMAKE_INSTALL_PREFIX=/opt/dort)
    if [ "$(id -u)" -eq 0 ]; then
        chown -R nobody:nogroup "$tree" "$staged"
        run=(setpriv --reuid=nobody --regid=nogroup --clear-groups --inh-caps=-all --)
        if unshare --net true 2>/dev/null; then
            run=(unshare --net "${run[@]}")
        else
            echo "not tried: without a network"
        fi
    else
        echo "not tried: by another user, without a network"
    fi
    if command -v ninja >/dev/null; then
        options+=(-G Ninja)
    else
        echo "not tried: with Ninja"
    fi
    export HOME=$tree
    quietly "${run[@]}" cmake -S "$copy" -B "$tree" "${options[@]}"
    without_warnings "$work/log"
    grep --quiet '^CMAKE_BUILD_TYPE:STRING=Release$' "$tree/CMakeCache.txt" || fail "no release build"
    quietly "${run[@]}" cmake --build "$tree" --parallel "$(nproc)"
    without_warnings "$work/log"
    quietly "${run[@]}" env DESTDIR="$staged" cmake --install "$tree"
    local bin="$staged/opt/dort/bin" examples="$copy/examples"
    "$bin/consolidator" -c -f "$work/moved.db" -p accelerator -h "$examples/system.hier" \
        -k "$examples/kernel.xml" -s "$examples/scale_rows.hls" -l "$examples/top.ll"
    "$build/bin/consolidator" -c -f "$work/built.db" -p accelerator -h "$examples/system.hier" \
        -k "$examples/kernel.xml" -s "$examples/scale_rows.hls" -l "$examples/top.ll"
    cmp "$work/moved.db" "$work/built.db" || fail "another database"
    "$bin/consolidator-inspect" verify "$work/moved.db" >"$work/log" || fail "verify"
    echo "ok: built elsewhere${run[*]:+, by: ${run[*]}}"
}

# variables_in CACHE: the names of what is kept, without CMake's own
variables_in() {
    sed -nE 's/^([A-Za-z0-9_-]+):[A-Z]+=.*/\1/p' "$1" | grep -v '^CMAKE_' | sort
}

subdirectory() {
    mkdir -p "$work/other/model"
    # Names that a project may well have itself, and a program that uses the library as an installed one.
    echo '#error "taken for a header of the library"' >"$work/other/model/Kernel.h"
    cp "$source/examples/read-database/main.cpp" "$work/other/main.cpp"
    cat >"$work/other/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(other LANGUAGES CXX)
set(with_tests ON)
add_custom_target(man_pages)
add_custom_target(check)
add_library(inspector INTERFACE)
if(TAKE_IN)
    add_subdirectory("$source" consolidator)
    add_executable(other main.cpp)
    target_include_directories(other PRIVATE .)
    target_link_libraries(other PRIVATE consolidator::query)
    add_executable(edit-kernel-xml "$source/examples/edit-kernel-xml/main.cpp")
    target_link_libraries(edit-kernel-xml PRIVATE consolidator::core)
endif()
foreach(variable CMAKE_BUILD_TYPE CMAKE_RUNTIME_OUTPUT_DIRECTORY CMAKE_CXX_FLAGS BUILD_TESTING)
    if(NOT "\${\${variable}}" STREQUAL "")
        message(FATAL_ERROR "\${variable} is set to \${\${variable}}")
    endif()
endforeach()
END
    quietly cmake -S "$work/other" -B "$work/alone" "-DCMAKE_CXX_COMPILER=$compiler" -DTAKE_IN=OFF
    quietly cmake -S "$work/other" -B "$work/tree" "-DCMAKE_CXX_COMPILER=$compiler" -DTAKE_IN=ON \
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON
    without_warnings "$work/log"
    comm -13 <(variables_in "$work/alone/CMakeCache.txt") <(variables_in "$work/tree/CMakeCache.txt") |
        grep -vE '^(_|prefix_result|CONSOLIDATOR_|consolidator_|EXPAT_|expat_|RE2_|FIND_PACKAGE_MESSAGE|pkgcfg_|PKG_CONFIG|PC_)' \
            >"$work/log" && {
        cat "$work/log" >&2
        fail "left in the other project's cache"
    }
    # Its own files are compiled as it wants, which is with nothing but the language.
    grep -A1 'main\.cpp' "$work/tree/compile_commands.json" | grep -- '-W' >&2 &&
        fail "the other project's files are compiled with our options"
    quietly cmake --build "$work/tree" --parallel "$(nproc)"
    without_warnings "$work/log"
    [ ! -e "$work/tree/consolidator/bin" ] || fail "our programs are built"
    "$build/bin/consolidator" -c -f "$work/accelerator.bin" -p accelerator \
        -d "$source/examples/program.dwarf" -h "$source/examples/system.hier" \
        -k "$source/examples/kernel.xml" -x "$source/examples/checksum_auxiliary.xml" \
        -s "$source/examples/scale_rows.hls" -s "$source/examples/checksum.hls" -l "$source/examples/top.ll"
    "$work/tree/other" "$work/accelerator.bin" | diff "$source/tests/install/read-database.expected" -
    "$work/tree/edit-kernel-xml" "$source/examples/kernel.xml" scale_rows blend |
        grep --quiet '<kernel name="blend"' || fail "the kernel description is not changed"
    # Without RE2 there is the core, and no word of it but that.
    sed -i 's/consolidator::query/consolidator::core/; /add_executable(other/d; /(other PRIVATE/d' "$work/other/CMakeLists.txt"
    quietly cmake -S "$work/other" -B "$work/core" "-DCMAKE_CXX_COMPILER=$compiler" -DTAKE_IN=ON \
        -DCMAKE_DISABLE_FIND_PACKAGE_RE2=ON
    grep --quiet 'RE2 is not installed: there is no target consolidator::query' "$work/log" || fail "RE2 is there"
    quietly cmake --build "$work/core" --parallel "$(nproc)"
    # It installs nothing but what is its own.
    quietly env DESTDIR="$work/staged" cmake --install "$work/tree"
    [ ! -e "$work/staged" ] || fail "installs $(find "$work/staged" -type f | head -3)"
    echo "ok: a part of another project"
}

"$kind"
