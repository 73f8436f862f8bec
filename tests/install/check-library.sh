#!/usr/bin/env bash
# Installs the libraries, moves the installed tree, and uses them from there as another project would:
# through the CMake package and through pkg-config.
#
#   tests/install/check-library.sh static|shared BUILD [EMULATOR]
#
# BUILD is a built tree, whose compiler is used for all, and whose emulator, if it is for another machine.
# A shared library is built for this, without the programs, below BUILD/install-tests, where everything goes.
set -euo pipefail

kind=$1
build=$2
emulator_path=${3:-}
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$build/install-tests/$kind
cached_in() { sed -n "s/^$2:[A-Z]*=//p" "$1/CMakeCache.txt"; }
cached() { cached_in "$build" "$1"; }
compiler=$(cached CMAKE_CXX_COMPILER)
toolchain=$(cached CMAKE_TOOLCHAIN_FILE)
if [ -n "$toolchain" ]; then
    # What the toolchain names, as an installed program's folder for pkg-config.
    compiler=$(sed -n 's/^set(CMAKE_CXX_COMPILER "\(.*\)")$/\1/p' "$build"/CMakeFiles/*/CMakeCXXCompiler.cmake | head -n 1)
    PKG_CONFIG_LIBDIR=/usr/lib/$("$compiler" -dumpmachine)/pkgconfig
    export PKG_CONFIG_LIBDIR
    configuration=("-DCMAKE_TOOLCHAIN_FILE=$toolchain")
else
    configuration=("-DCMAKE_CXX_COMPILER=$compiler")
fi
emulator=()
[ -z "$emulator_path" ] || emulator=("$emulator_path")
warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
rm -rf "$work/installed" "$work/moved" "$work/user"
mkdir -p "$work/user"

# quietly COMMAND...: shows the output only if the command fails
quietly() {
    "$@" >"$work/log" 2>&1 || {
        echo "FAILED: $*" >&2
        cat "$work/log" >&2
        exit 1
    }
}

# require TEST...: stops unless the test holds
require() {
    "$@" || {
        echo "FAILED: $*" >&2
        exit 1
    }
}

# expect_output WHAT COMMAND...: the command prints what the example database holds
expect_output() {
    local what=$1
    shift
    "$@" >"$work/output"
    diff "$source/tests/install/read-database.expected" "$work/output"
    echo "ok: $what"
}

library=$build
if [ "$kind" = shared ]; then
    library=$work/build
    quietly cmake -S "$source" -B "$library" "${configuration[@]}" \
        -DCMAKE_BUILD_TYPE=Release -DCONSOLIDATOR_SHARED=ON -DCONSOLIDATOR_PROGRAMS=OFF
    quietly cmake --build "$library" --parallel "$(nproc)"
fi
for component in library development; do
    quietly cmake --install "$library" --prefix "$work/installed" --component "$component"
done
mv "$work/installed" "$work/moved"
prefix=$work/moved
pkgconfig=$(dirname "$(find "$prefix" -name consolidator.pc)")
export PKG_CONFIG_PATH=$pkgconfig
# Only shared libraries are looked for at run time.
export LD_LIBRARY_PATH=${pkgconfig%/pkgconfig}

"${emulator[@]}" "$build/bin/consolidator" -c -f "$work/accelerator.bin" -p accelerator \
    -d "$source/examples/program.dwarf" -h "$source/examples/system.hier" \
    -k "$source/examples/kernel.xml" -x "$source/examples/checksum_auxiliary.xml" \
    -s "$source/examples/scale_rows.hls" -s "$source/examples/checksum.hls" \
    -l "$source/examples/top.ll"

# Each header holds all it needs, takes no other project's headers for ours, and has no warnings.
check_headers() {
    mkdir -p "$work/user/model" "$work/user/consolidated" "$work/user/shared"
    for header in model/Kernel.h shared/UniqueList.h consolidated/InputFile.h; do
        echo '#error "taken for a header of the library"' >"$work/user/$header"
    done
    (cd "$prefix/include" && find consolidator -name '*.h' | sort) >"$work/headers"
    require [ -s "$work/headers" ]
    while read -r header; do
        echo "#include <$header>" >"$work/user/header.cpp"
        # shellcheck disable=SC2046 # options are words
        quietly "$compiler" -std=c++20 "${warnings[@]}" -fsyntax-only -I "$work/user" \
            $(pkg-config --cflags consolidator) "$work/user/header.cpp"
    done <"$work/headers"
    echo "ok: $(wc -l <"$work/headers") headers stand alone"
}
# They are the same for either kind.
[ "$kind" = shared ] || check_headers

# The library is of the kind that was asked for.
case $kind in
static)
    for name in libconsolidator libconsolidator-query; do
        require [ -f "$LD_LIBRARY_PATH/$name.a" ]
        require [ ! -e "$LD_LIBRARY_PATH/$name.so" ]
    done
    ;;
shared)
    version=$(pkg-config --modversion consolidator)
    interface=${version%.*} # see cmake/Install.cmake
    [ "${version%%.*}" -eq 0 ] || interface=${version%%.*}
    for name in libconsolidator libconsolidator-query; do
        soname=$(readelf --dynamic "$LD_LIBRARY_PATH/$name.so" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
        require [ "$soname" = "$name.so.$interface" ]
        require [ -f "$LD_LIBRARY_PATH/$name.so.$version" ]
        require [ ! -e "$LD_LIBRARY_PATH/$name.a" ]
    done
    # They find each other without a word of ours.
    (
        unset LD_LIBRARY_PATH
        ldd "${pkgconfig%/pkgconfig}/libconsolidator-query.so" | grep --quiet "libconsolidator.so.$interface => ${pkgconfig%/pkgconfig}/"
    ) || [ -n "$toolchain" ] || require false "libconsolidator-query.so finds libconsolidator.so"
    ;;
esac
echo "ok: $kind libraries"

# CMake
for example in read-database edit-kernel-xml; do
    quietly cmake -S "$source/examples/$example" -B "$work/user/cmake/$example" \
        "${configuration[@]}" -DCMAKE_PREFIX_PATH="$prefix"
    quietly cmake --build "$work/user/cmake/$example"
done
expect_output "find_package" "${emulator[@]}" "$work/user/cmake/read-database/read-database" "$work/accelerator.bin"
# Who does not ask for questions need not have what they need.
require [ -z "$(cached_in "$work/user/cmake/edit-kernel-xml" RE2_LIBRARY)" ]

# rename_kernel PROGRAM: has it rename the example's kernel, and sees that nothing else has changed
rename_kernel() {
    "${emulator[@]}" "$1" "$source/examples/kernel.xml" scale_rows blend >"$work/blend.xml"
    require [ "$(grep -c '<kernel name="blend" language="c"' "$work/blend.xml")" -eq 1 ]
    # Back again, but for white space, and for elements that end in their start tags.
    "${emulator[@]}" "$1" "$work/blend.xml" blend scale_rows | tr -d ' \n' |
        sed -E 's,></(version|clock|port|arg|instance)>,/>,g' >"$work/output"
    tr -d ' \n' <"$source/examples/kernel.xml" | cmp - "$work/output"
    echo "ok: a kernel description"
}
rename_kernel "$work/user/cmake/edit-kernel-xml/edit-kernel-xml"
status=0
"${emulator[@]}" "$work/user/cmake/edit-kernel-xml/edit-kernel-xml" "$source/examples/top.ll" a b 2>"$work/output" || status=$?
require [ "$status" -eq 1 ]
grep --quiet ':1:1: not well-formed' "$work/output"

# Questions are asked of RE2 where the library is static, and whoever asks for them without it is told so.
if [ "$kind" = static ]; then
    mkdir -p "$work/user/without"
    cat >"$work/user/without/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(without LANGUAGES CXX)
set(CMAKE_DISABLE_FIND_PACKAGE_RE2 ON)
find_package(consolidator REQUIRED OPTIONAL_COMPONENTS query)
if(NOT TARGET consolidator::core OR TARGET consolidator::query OR consolidator_query_FOUND)
    message(FATAL_ERROR "not the core alone")
endif()
find_package(consolidator REQUIRED COMPONENTS ${component})
END
    without() {
        cmake -S "$work/user/without" -B "$work/user/without/build" -DCMAKE_PREFIX_PATH="$prefix" \
            "${configuration[@]}" -Dcomponent="$1" >"$work/log" 2>&1
    }
    require without core
    if without query; then
        require false "query is there without RE2"
    fi
    tr -s ' \n' ' ' <"$work/log" | grep --quiet 'The component query needs RE2, which is not found'
    if without other; then
        require false "there is no component of this name"
    fi
    echo "ok: without RE2"
fi

# Another minor version is another interface as long as the major one is 0.
mkdir -p "$work/user/version"
cat >"$work/user/version/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(version LANGUAGES CXX)
find_package(consolidator ${wanted} REQUIRED)
END
wants() {
    cmake -S "$work/user/version" -B "$work/user/version/build" -DCMAKE_PREFIX_PATH="$prefix" \
        "${configuration[@]}" -Dwanted="$1" >"$work/log" 2>&1
}
version=$(pkg-config --modversion consolidator)
IFS=. read -r major minor _ <<<"$version"
require wants "$major.$minor"
others=("$major.$((minor + 1))" "$((major + 1)).0")
if [ "$major" -eq 0 ]; then
    others+=("0.$((minor - 1))") # see cmake/Install.cmake
fi
for other in "${others[@]}"; do
    if wants "$other"; then
        echo "FAILED: accepted as version $other" >&2
        exit 1
    fi
done
grep --quiet "version: $version" "$work/log" # that is why it was not accepted
echo "ok: versions"

# pkg-config and the compiler alone
# shellcheck disable=SC2046 # options are words
quietly "$compiler" -std=c++20 -O2 "${warnings[@]}" "$source/examples/read-database/main.cpp" \
    -o "$work/user/read-database" $(pkg-config --cflags --libs consolidator-query)
require [ "$(pkg-config --print-requires consolidator | grep --count re2)" -eq 0 ]
expect_output "pkg-config" "${emulator[@]}" "$work/user/read-database" "$work/accelerator.bin"

# A program that uses a reader needs Expat, which it gets without asking for it.
cat >"$work/user/reader.cpp" <<'END'
#include <consolidator/readers/KernelFile.h>
int main(int, char** argv) {
    consolidator::KernelFile reader(argv[1]);
    return reader.parse() && reader.kernels().size() == 1 ? 0 : 1;
}
END
# shellcheck disable=SC2046 # options are words
quietly "$compiler" -std=c++20 "$work/user/reader.cpp" -o "$work/user/reader" \
    $(pkg-config --cflags --libs consolidator)
"${emulator[@]}" "$work/user/reader" "$source/examples/kernel.xml"
echo "ok: readers"

# What docs/library.md shows, in a folder with the files that it names.
"$source/tests/install/library-examples.sh" "$work/user/examples"
cp "$work/accelerator.bin" "$source/examples/kernel.xml" "$work/user/examples"
for example in "$work"/user/examples/*.cpp; do
    # shellcheck disable=SC2046 # options are words
    quietly "$compiler" -std=c++20 "${warnings[@]}" "$example" -o "${example%.cpp}" \
        $(pkg-config --cflags --libs consolidator-query)
done
(
    cd "$work/user/examples"
    "${emulator[@]}" ./program1 >"$work/output"
    require grep --quiet --line-regexp '/top/region_0/scale_rows_1/U0/row_reg: 4 bits' "$work/output"
    "${emulator[@]}" ./pieces | diff pieces.output -
    require [ "$(grep -c '<arg ' changed.xml)" -eq 5 ] # the example has four
)
echo "ok: documents"

# What is no database is said to be none.
status=0
"${emulator[@]}" "$work/user/read-database" "$source/examples/top.ll" 2>"$work/output" || status=$?
require [ "$status" -eq 1 ]
require [ "$(cat "$work/output")" = "$source/examples/top.ll: not a whole consolidated file of a known version" ]
echo "ok: no database"
