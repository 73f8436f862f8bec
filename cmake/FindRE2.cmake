# Finds RE2, whose regular expressions take time in proportion to the text: find_package(RE2).
#
# Debian's package brings no CMake files. With RE2_USE_STATIC_LIBS the library goes into the program,
# as it has to where the C++ library does: two copies of that one in a process would not agree.
#
# Gives the target RE2::RE2.

find_path(RE2_INCLUDE_DIR re2/re2.h)
if(RE2_USE_STATIC_LIBS)
    find_library(RE2_STATIC_LIBRARY NAMES libre2.a)
    set(re2_library RE2_STATIC_LIBRARY)
else()
    find_library(RE2_LIBRARY NAMES re2)
    set(re2_library RE2_LIBRARY)
endif()
mark_as_advanced(RE2_INCLUDE_DIR RE2_STATIC_LIBRARY RE2_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(RE2 REQUIRED_VARS ${re2_library} RE2_INCLUDE_DIR)

if(RE2_FOUND AND NOT TARGET RE2::RE2)
    find_package(Threads REQUIRED)
    add_library(RE2::RE2 UNKNOWN IMPORTED)
    set_target_properties(RE2::RE2 PROPERTIES
        IMPORTED_LOCATION "${${re2_library}}"
        INTERFACE_INCLUDE_DIRECTORIES "${RE2_INCLUDE_DIR}"
        INTERFACE_LINK_LIBRARIES Threads::Threads)
endif()
