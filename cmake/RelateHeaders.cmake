# Lets installed headers name each other relative to themselves:
#
#     #include "model/Kernel.h"      in include/consolidator/consolidated/ConsolidatedFile.h becomes
#     #include "../model/Kernel.h"
#
# So they need no folder of ours on a program's search path, and never take in a model/Kernel.h of the
# program's own. Runs at the end of an installation, with `headers` (relative paths, all in folders of
# depth one) and `header_folder` set.

cmake_path(ABSOLUTE_PATH header_folder BASE_DIRECTORY "${CMAKE_INSTALL_PREFIX}")
foreach(header IN LISTS headers)
    set(path "$ENV{DESTDIR}${header_folder}/${header}")
    file(READ "${path}" text)
    string(REGEX REPLACE "(#include \")([a-z]+/)" "\\1../\\2" text "${text}")
    file(WRITE "${path}" "${text}")
endforeach()
