# The protections a distribution builds its packages with, for a program that reads files from
# anywhere: a smashed stack or an overrun buffer ends the process instead of being used, and the
# program lies at another address in every run, with its tables of functions read-only.
#
# They are on the interface library consolidator_hardening, which our own targets link privately, so
# that no other project is compiled with them. A program of another project that takes in our sources
# and links our static libraries is linked with the options for the linker, as privately linked
# libraries pass those on; nothing that is installed carries any of them. tests/hardening/check.sh
# looks for them in the program.

include(CheckCXXCompilerFlag)
include(CheckPIESupported)

add_library(consolidator_hardening INTERFACE)

# This property makes the code of all that link the library independent of its position; linking it
# with -pie is up to CMake, which only does it after this check.
check_pie_supported(LANGUAGES CXX)
set_target_properties(consolidator_hardening PROPERTIES INTERFACE_POSITION_INDEPENDENT_CODE ON)

# CMake takes our libraries' code for that of shared ones, whose functions somebody may replace at run
# time. Nobody does: calls inside a file may be resolved, and inlined, as ever.
target_compile_options(consolidator_hardening INTERFACE
    -fstack-protector-strong -Wformat -Werror=format-security -fno-semantic-interposition)
target_link_options(consolidator_hardening INTERFACE -Wl,-z,relro,-z,now)

# Not every processor has these.
foreach(flag -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "CONSOLIDATOR_HAS${flag}" supported)
    check_cxx_compiler_flag(${flag} ${supported})
    if(${supported})
        target_compile_options(consolidator_hardening INTERFACE ${flag})
    endif()
endforeach()

# Checked forms of memcpy() and its like. They need optimisation, and they hide from the sanitizers
# the very accesses those look for. Some compilers define the macro themselves, hence the -U.
if(NOT CONSOLIDATOR_SANITIZE)
    set(optimised $<NOT:$<CONFIG:Debug>>)
    target_compile_options(consolidator_hardening INTERFACE
        $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
endif()
