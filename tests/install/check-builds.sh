#!/usr/bin/env bash
# Builds the project in surroundings unlike those that it is developed in.
#
#   tests/install/check-builds.sh elsewhere|subdirectory BUILD
#
# elsewhere: from a folder with blanks and umlauts in its name that may not be written to, by another user
# than root and without a network where that can be tried, with Ninja where there is one, and without a
# build type; then installed with DESTDIR and used from there.
# subdirectory: as a part of another project, whose own settings and targets stay what they are.
#
# BUILD is a built tree, whose compiler is used; everything goes below BUILD/install-tests.
set -euo pipefail
kind=$1
build=$2
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$build/install-tests/builds-$kind
compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$build/CMakeCache.txt")
[ ! -e "$work" ] || chmod -R u+w "$work"
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

# without_warnings: of the configuration that has just been done quietly
without_warnings() {
    ! grep --quiet Warning "$work/log" || {
        cat "$work/log" >&2
        fail "a warning of CMake"
    }
}

elsewhere() {
    local copy="$work/zwei Wörter/quelle" tree="$work/gebäut, dort" staged="$work/ziel ordner" run=()
    mkdir -p "$copy" "$tree" "$staged"
    (cd "$source" && tar --create --exclude=./build --exclude=./.git .) | tar --extract --directory "$copy"
    chmod -R a-w,a+rX "$copy"
    if [ "$(id -u)" -eq 0 ]; then
        # The way to it is not for everybody; a mount of its own is.
        chown -R nobody "$tree" "$staged"
        run=(setpriv --reuid=nobody --clear-groups --inh-caps=-all --)
        "${run[@]}" test -x "$tree" || run=()
        if unshare --net true 2>/dev/null; then
            run=(unshare --net "${run[@]}")
        fi
    fi
    local options=("-DCMAKE_CXX_COMPILER=$compiler" -DBUILD_TESTING=OFF -DCMAKE_INSTALL_PREFIX=/opt/dort)
    if command -v ninja >/dev/null; then
        options+=(-G Ninja)
    fi
    export HOME=$tree
    quietly "${run[@]}" cmake -S "$copy" -B "$tree" "${options[@]}"
    without_warnings
    grep --quiet '^CMAKE_BUILD_TYPE:STRING=Release$' "$tree/CMakeCache.txt" || fail "no release build"
    quietly "${run[@]}" cmake --build "$tree" --parallel "$(nproc)"
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

subdirectory() {
    mkdir -p "$work/other"
    cat >"$work/other/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(other LANGUAGES CXX)
# Names that a project may well have itself.
add_custom_target(man_pages)
add_custom_target(check)
add_library(inspector INTERFACE)
add_subdirectory("$source" consolidator)
add_executable(other "$source/examples/read-database/main.cpp")
target_link_libraries(other PRIVATE consolidator::core)
# What holds here is what this project has set, which is nothing.
foreach(variable CMAKE_BUILD_TYPE CMAKE_RUNTIME_OUTPUT_DIRECTORY CMAKE_CXX_FLAGS BUILD_TESTING
        CMAKE_CXX_STANDARD CMAKE_MODULE_PATH CPACK_PACKAGE_NAME)
    if(NOT "\${\${variable}}" STREQUAL "")
        message(FATAL_ERROR "\${variable} is set to \${\${variable}}")
    endif()
endforeach()
get_property(options TARGET other PROPERTY COMPILE_OPTIONS)
if(options)
    message(FATAL_ERROR "compiled with \${options}")
endif()
END
    sed 's#<consolidator/#<#' "$source/examples/read-database/main.cpp" >"$work/other/main.cpp"
    sed -i "s#\"$source/examples/read-database/main.cpp\"#main.cpp#" "$work/other/CMakeLists.txt"
    quietly cmake -S "$work/other" -B "$work/tree" "-DCMAKE_CXX_COMPILER=$compiler"
    without_warnings
    # Options and results that are kept: ours all begin with our name, or are those of CMake and of the
    # libraries that were looked for.
    if grep -E '^(BUILD_|CPACK|CTEST|DART|SCDOC|WITH_)' "$work/tree/CMakeCache.txt" >"$work/log"; then
        cat "$work/log" >&2
        fail "left in the other project's cache"
    fi
    quietly cmake --build "$work/tree" --target other --parallel "$(nproc)"
    "$build/bin/consolidator" -c -f "$work/accelerator.bin" -p accelerator \
        -d "$source/examples/program.dwarf" -h "$source/examples/system.hier" \
        -k "$source/examples/kernel.xml" -x "$source/examples/checksum_auxiliary.xml" \
        -s "$source/examples/scale_rows.hls" -s "$source/examples/checksum.hls" -l "$source/examples/top.ll"
    "$work/tree/other" "$work/accelerator.bin" | diff "$source/tests/install/read-database.expected" -
    # It installs nothing but what is its own.
    quietly env DESTDIR="$work/staged" cmake --install "$work/tree"
    [ ! -e "$work/staged" ] || fail "installs $(find "$work/staged" -type f | head -3)"
    echo "ok: a part of another project"
}

"$kind"
