# Makes the staged files of each package what Debian expects. CPack runs it before it makes the
# packages.

set(debian ${CMAKE_CURRENT_LIST_DIR}/../packaging/debian)

# The packages' own changelog must know the version.
file(STRINGS ${debian}/changelog first_line LIMIT_COUNT 1)
set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
if(NOT first_line MATCHES "^consolidator \\(${version}\\) ")
    message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${version}")
endif()

# Always the same bytes: without name and time.
function(compress)
    execute_process(COMMAND gzip --best --no-name --force ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component_and_package runtime:consolidator development:libconsolidator-dev)
    string(REPLACE ":" ";" names ${component_and_package})
    list(GET names 0 component)
    list(GET names 1 package)
    set(share ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr/share)
    set(documents ${share}/doc/${package})
    file(COPY ${debian}/copyright DESTINATION ${documents})
    file(COPY_FILE ${debian}/changelog ${documents}/changelog.Debian)
    file(COPY_FILE ${debian}/../../CHANGELOG.md ${documents}/changelog)
    compress(${documents}/changelog.Debian ${documents}/changelog)
    # The copyright file tells the licence, and the changelog is there now.
    file(REMOVE ${documents}/LICENSE ${documents}/CHANGELOG.md)
    # What lintian expects and does not hold here, with the reason.
    file(MAKE_DIRECTORY ${share}/lintian/overrides)
    file(COPY_FILE ${debian}/lintian-overrides ${share}/lintian/overrides/${package})
    file(GLOB pages ${share}/man/man1/*.1)
    if(pages)
        compress(${pages})
    endif()
endforeach()

# Whatever the umask was. Programs have their permissions from the installation.
file(GLOB_RECURSE paths LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
foreach(path IN LISTS paths)
    if(IS_DIRECTORY ${path})
        file(CHMOD ${path} DIRECTORY_PERMISSIONS
            OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
    elseif(NOT path MATCHES "/bin/")
        file(CHMOD ${path} FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    endif()
endforeach()
