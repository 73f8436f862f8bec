# The headers that other programs may include, as they include them: below consolidator/ in the folder
# `public_header_folder`, which is made when the project is configured.
#
# There they name each other relative to themselves:
#
#     #include "model/Kernel.h"      in consolidated/ConsolidatedFile.h becomes
#     #include "../model/Kernel.h"
#
# So they need no folder of ours on a program's search path, and never take in a model/Kernel.h of the
# program's own.

# What a program may include, and what that includes in turn. Nothing of Expat is among it.
set(public_headers
    consolidated/ConsolidatedFile.h
    consolidated/Diagnostic.h
    consolidated/FileHandle.h
    consolidated/InputFile.h
    consolidated/LineCountingBuffer.h
    consolidated/SectionEntry.h
    model/ArgumentList.h
    model/BreakableCondition.h
    model/HardwareVariable.h
    model/InstanceLocations.h
    model/Kernel.h
    model/KernelIndex.h
    model/KernelType.h
    model/LocationList.h
    model/LogicLocation.h
    model/MergeObserver.h
    model/RAMFile.h
    model/Variable.h
    query/Bits.h
    query/Coverage.h
    query/Database.h
    query/InstanceFinder.h
    query/integrity/ContainerCheck.h
    query/integrity/DatabaseFindings.h
    query/integrity/FileBytes.h
    query/KernelView.h
    query/NamePattern.h
    query/NearestNames.h
    query/Occupants.h
    query/Stops.h
    query/Words.h
    readers/AuxiliaryXMLFile.h
    readers/HdlReservedWords.h
    readers/HierarchyFile.h
    readers/HLSFile.h
    readers/KernelFile.h
    readers/LLFile.h
    readers/LocationBudget.h
    readers/LogicLocationObserver.h
    shared/Code.h
    shared/Finding.h
    shared/HashIndex.h
    shared/KeyedHash.h
    shared/Marks.h
    shared/FileDescriptor.h
    shared/FileReplacement.h
    shared/PathFinder.h
    shared/PathOwners.h
    shared/Prefetch.h
    shared/schemas/Binding.h
    shared/schemas/Exceptions.h
    shared/schemas/KernelDescription.h
    shared/schemas/XmlWriter.h
    shared/Severity.h
    shared/UniqueList.h)

set(public_header_folder ${PROJECT_BINARY_DIR}/include)
foreach(header IN LISTS public_headers)
    # From its folder back to the one that all are in: "..", or "../..".
    cmake_path(GET header PARENT_PATH way_back)
    string(REGEX REPLACE "[a-z]+" ".." way_back "${way_back}")
    file(READ ${PROJECT_SOURCE_DIR}/${header} text)
    string(REGEX REPLACE "(#include \")([a-z]+/)" "\\1${way_back}/\\2" text "${text}")
    file(CONFIGURE OUTPUT ${public_header_folder}/consolidator/${header} CONTENT "${text}" @ONLY)
    # A changed header is made anew by the next build.
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
endforeach()
# None stays that is no longer one.
file(GLOB_RECURSE present RELATIVE ${public_header_folder}/consolidator ${public_header_folder}/consolidator/*)
foreach(header IN LISTS present)
    if(NOT header IN_LIST public_headers)
        file(REMOVE ${public_header_folder}/consolidator/${header})
    endif()
endforeach()
