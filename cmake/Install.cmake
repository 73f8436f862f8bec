# What `cmake --install` puts where. Three components, so that packages can be made of them:
#
#   runtime      the programs, their man pages, completions and documents
#   library      libconsolidator.so.* and libconsolidator-query.so.*, when they are shared
#   development  what a program needs to read databases with the libraries: headers below
#                include/consolidator, the libraries, a CMake package and two pkg-config files
#
# docs/library.md shows how the last is used; tests/install uses it.

include(CMakePackageConfigHelpers)

# The libraries

set(header_folder ${CMAKE_INSTALL_INCLUDEDIR}/consolidator)
install(DIRECTORY ${public_header_folder}/consolidator/ DESTINATION ${header_folder} COMPONENT development)

if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(compatible_versions SameMinorVersion)
else()
    set(compatible_versions SameMajorVersion)
endif()
target_include_directories(consolidator_core
    INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
set_target_properties(consolidator_query PROPERTIES INSTALL_RPATH "$ORIGIN") # the core lies beside it

# Each has a set of its own: who wants the core only need not have what the other one needs.
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/consolidator)
foreach(library core query)
    set_target_properties(consolidator_${library} PROPERTIES EXPORT_NAME ${library})
    install(TARGETS consolidator_${library} EXPORT consolidator-${library}
        ARCHIVE COMPONENT development
        LIBRARY COMPONENT library NAMELINK_COMPONENT development)
    install(EXPORT consolidator-${library}
        NAMESPACE consolidator::
        FILE consolidator-${library}-targets.cmake
        DESTINATION ${package_folder}
        COMPONENT development)
endforeach()

# Only programs that link a static library have to find what it needs.
set(query_needs_re2 OFF)
set(finders)
if(NOT CONSOLIDATOR_SHARED)
    set(find_dependencies "include(CMakeFindDependencyMacro)\nfind_dependency(EXPAT 2.5)\n")
    set(query_needs_re2 ON)
    set(finders cmake/FindRE2.cmake)
endif()
configure_package_config_file(
    cmake/consolidatorConfig.cmake.in ${PROJECT_BINARY_DIR}/cmake/consolidatorConfig.cmake
    INSTALL_DESTINATION ${package_folder}
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/cmake/consolidatorConfigVersion.cmake
    COMPATIBILITY ${compatible_versions})
install(
    FILES
        ${PROJECT_BINARY_DIR}/cmake/consolidatorConfig.cmake
        ${PROJECT_BINARY_DIR}/cmake/consolidatorConfigVersion.cmake
        ${finders}
    DESTINATION ${package_folder}
    COMPONENT development)

# Paths relative to the file itself stay right when the installed tree is moved.
set(pkgconfig_folder ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH prefix_from_pkgconfig ${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
file(RELATIVE_PATH headers_from_pkgconfig ${pkgconfig_folder} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
# Who links a static library links what it needs too, whether or not they ask for static linking.
if(CONSOLIDATOR_SHARED)
    set(requires_field "Requires.private")
    set(query_requires "\nRequires.private: re2")
else()
    set(requires_field "Requires")
    set(query_requires ", re2")
endif()
foreach(file consolidator consolidator-query)
    configure_file(cmake/${file}.pc.in ${PROJECT_BINARY_DIR}/cmake/${file}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/cmake/${file}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

if(NOT CONSOLIDATOR_PROGRAMS)
    return()
endif()

# Programs

set(CONSOLIDATOR_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
    "Where zsh looks for completions; Debian's packages have a place of their own")

install(TARGETS consolidator consolidator-inspect COMPONENT runtime)
if(CONSOLIDATOR_SHARED)
    # The library is found wherever the whole was installed to or moved.
    file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(consolidator consolidator-inspect PROPERTIES
        INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
endif()
foreach(program consolidator consolidator-inspect)
    install(FILES packaging/completions/bash/${program}
        DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT runtime)
    install(FILES packaging/completions/zsh/_${program}
        DESTINATION ${CONSOLIDATOR_ZSH_COMPLETIONS} COMPONENT runtime)
    install(FILES packaging/completions/fish/${program}.fish
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT runtime)
endforeach()
install(FILES README.md CHANGELOG.md CONTRIBUTING.md LICENSE SECURITY.md
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT runtime)

# Man pages

find_program(SCDOC scdoc)
if(SCDOC)
    foreach(program consolidator consolidator-inspect)
        set(source ${PROJECT_BINARY_DIR}/man/${program}.1.scd)
        set(page ${PROJECT_BINARY_DIR}/man/${program}.1)
        configure_file(packaging/${program}.1.scd ${source} @ONLY)
        # It writes to standard output only.
        add_custom_command(OUTPUT ${page}
            COMMAND sh -c [["$0" <"$1" >"$2.part" && mv "$2.part" "$2"]] ${SCDOC} ${source} ${page}
            DEPENDS ${source}
            COMMENT "Making the man page ${program}.1"
            VERBATIM)
        list(APPEND man_pages ${page})
    endforeach()
    add_custom_target(consolidator_man_pages ALL DEPENDS ${man_pages})
    install(FILES ${man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runtime)
else()
    message(STATUS "scdoc is not installed: no man pages are made")
endif()
