# The libraries that the product uses, and how each program is linked to them: found and decided here
# only. What was decided is printed when the project is configured and by
# `consolidator-inspect --version`, in the words of consolidator_linkage.
#
# consolidator is started many times in a build and does little each time; finding and binding shared C++
# libraries would take half of that. So the C++ library and Boost go into the program. Both or none: two
# copies of the C++ library in a process would not agree, and a shared Boost brings its own.
#
# consolidator-inspect has RE2, of which the archive alone does not link everywhere: newer ones want
# parts of Abseil, other ones with each release, and say so only to who asks pkg-config. The shared
# library knows what it needs. So everything in this program is shared.

# consolidator_need(PACKAGE ...): find_package(), which says how to get what is missing
set(consolidator_install_hint "scripts/install-dependencies build")
if(CMAKE_CROSSCOMPILING)
    set(consolidator_install_hint "scripts/install-dependencies build test arm64")
endif()
macro(consolidator_need package)
    find_package(${package} ${ARGN})
    if(NOT ${package}_FOUND)
        message(FATAL_ERROR "${package} is missing. On Debian run:\n  ${consolidator_install_hint}\n")
    endif()
endmacro()

# Without the programs the libraries are left. The core needs nothing but Expat. The one of questions,
# consolidator::query, needs RE2 beside it, and is there if RE2 is; what is installed has both.
consolidator_need(EXPAT 2.5)
if(NOT CONSOLIDATOR_PROGRAMS AND CONSOLIDATOR_INSTALL)
    consolidator_need(RE2)
    return()
elseif(NOT CONSOLIDATOR_PROGRAMS)
    find_package(RE2 QUIET)
    if(NOT RE2_FOUND)
        message(STATUS "RE2 is not installed: there is no target consolidator::query")
    endif()
    return()
endif()

# Boost's own CMake files, as CMake's module is gone. Another project that takes in this one may have
# found Boost before; then its kind is what counts.
set(static_runtime_reason "a small run starts in half the time")
set(static_runtime OFF)
if(NOT CONSOLIDATOR_STATIC_RUNTIME)
    set(static_runtime_reason "CONSOLIDATOR_STATIC_RUNTIME is off")
elseif(CONSOLIDATOR_SHARED)
    set(static_runtime_reason "libconsolidator is shared, and needs the same C++ library")
elseif(CONSOLIDATOR_SANITIZE OR CONSOLIDATOR_FUZZ)
    set(static_runtime_reason "the sanitizers want it so")
else()
    set(Boost_USE_STATIC_LIBS ON)
    find_package(Boost 1.74 QUIET CONFIG COMPONENTS program_options)
    set(boost_kind "")
    if(TARGET Boost::program_options)
        get_target_property(boost_kind Boost::program_options TYPE)
    endif()
    if(boost_kind STREQUAL STATIC_LIBRARY)
        set(static_runtime ON)
    else()
        set(static_runtime_reason "there is no static Boost")
        unset(Boost_USE_STATIC_LIBS)
    endif()
endif()
consolidator_need(Boost 1.74 CONFIG COMPONENTS program_options)

consolidator_need(CLI11 2.1)
consolidator_need(RE2)
consolidator_need(RapidJSON)
consolidator_need(SQLite3 3.40)
# The name that CMake knows it by has changed; the new one draws a warning from no release, where there
# is one.
set(sqlite_target SQLite::SQLite3)
if(TARGET SQLite3::SQLite3)
    set(sqlite_target SQLite3::SQLite3)
endif()

# "shared" or "static", as the library was found.
function(consolidator_kind_of target result)
    get_target_property(kind ${target} TYPE)
    set(file "")
    foreach(configuration "" _RELEASE _NONE _NOCONFIG _RELWITHDEBINFO)
        if(NOT file)
            get_target_property(file ${target} IMPORTED_LOCATION${configuration})
        endif()
    endforeach()
    if(kind STREQUAL STATIC_LIBRARY OR file MATCHES "\\.a$")
        set(${result} static PARENT_SCOPE)
    else()
        set(${result} shared PARENT_SCOPE)
    endif()
endfunction()
consolidator_kind_of(Boost::program_options boost_kind)
consolidator_kind_of(EXPAT::EXPAT expat_kind)
consolidator_kind_of(RE2::RE2 re2_kind)
consolidator_kind_of(${sqlite_target} sqlite_kind)
set(runtime_kind shared)
if(static_runtime)
    set(runtime_kind static)
endif()
string(CONCAT consolidator_linkage
    "consolidator: C++ library ${runtime_kind}, Boost ${Boost_VERSION_STRING} ${boost_kind}"
    " (${static_runtime_reason}), Expat ${expat_kind}\n"
    "consolidator-inspect: C++ library shared, RE2 ${re2_kind}"
    " (its archive does not say what it needs), SQLite ${sqlite_kind}, Expat ${expat_kind}\n"
    "made by ${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}"
    " for ${CMAKE_SYSTEM_PROCESSOR}")
string(REPLACE "\n" "\n-- " linkage_lines "${consolidator_linkage}")
message(STATUS "${linkage_lines}")
string(REPLACE "\n" "\\n" consolidator_linkage "${consolidator_linkage}") # for C++
