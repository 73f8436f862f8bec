# Finds RE2, whose regular expressions take time in proportion to the text: find_package(RE2).
#
# Debian's package brings no CMake files. The shared library is wanted, as it knows what it needs
# itself; see Libraries.cmake. Installed for those who link our static library of questions.
#
# Gives the target RE2::RE2.

find_path(RE2_INCLUDE_DIR re2/re2.h)
find_library(RE2_LIBRARY NAMES libre2.so libre2.dylib)
mark_as_advanced(RE2_INCLUDE_DIR RE2_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(RE2 REQUIRED_VARS RE2_LIBRARY RE2_INCLUDE_DIR)

if(RE2_FOUND AND NOT TARGET RE2::RE2)
    add_library(RE2::RE2 UNKNOWN IMPORTED)
    set_target_properties(RE2::RE2 PROPERTIES
        IMPORTED_LOCATION "${RE2_LIBRARY}"
        INTERFACE_INCLUDE_DIRECTORIES "${RE2_INCLUDE_DIR}")
endif()
