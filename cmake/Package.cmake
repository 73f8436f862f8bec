# Debian packages, by `cpack -G DEB` in a tree that is configured for /usr; scripts/package does that:
#
#   consolidator          the component runtime: the programs with all that is for their users
#   libconsolidator-dev   the component development: the libraries, static, with headers
#
# packaging/debian has what only they need. cmake/DebianFiles.cmake puts it in its place.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME consolidator)
set(CPACK_PACKAGE_VENDOR "The consolidator developers")
set(CPACK_PACKAGE_CONTACT "The consolidator developers <consolidator@example.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # Each package has its own, below.
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME consolidator)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION electronics)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "debug databases of FPGA accelerators
The stages of an FPGA accelerator build leave behind files that tell of its
kernels: their instances, arguments and variables, the registers these became,
and where in the device each bit lies. The consolidator merges them into one
database, with which a hardware debugger shows variables of the source and
stops at lines of it.
.
The second program, consolidator-inspect, shows what is in such a database and
tells why something is not.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libconsolidator-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libexpat1-dev (>= 2.5)")
# Not among what it depends on: programs that use the core alone link without it.
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_RECOMMENDS libre2-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS consolidator)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "debug databases of FPGA accelerators - development files
A C++ library that reads and writes the databases of the consolidator: the
kernels of an FPGA accelerator with their arguments, variables and registers,
and where in the device each bit lies. A second one, which needs RE2, answers
questions: which register holds a variable, what lies at a place.
.
This package has headers and the static libraries, with what CMake and
pkg-config need to find them.")

include(CPack)
