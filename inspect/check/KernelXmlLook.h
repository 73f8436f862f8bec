// What stands in a kernel.xml that its schema does not know, and what a run would take is missing
// there.
#pragma once

#include "inspect/check/Findings.h"

#include <cstddef>
#include <string>

namespace consolidator::inspect {

/// So many findings are made of a document; what else there is gets one that tells how often.
inline constexpr std::size_t mostXmlNames = 100;

/// Looks once more through the kernel.xml at `path`, a regular file that has been read to its end,
/// by the tables of shared/schemas/KernelDescription.h. Makes one finding for each element that is
/// not known where it stands, each attribute that its element does not have (but for those of XML's
/// namespaces), and each one that an argument lacks:
///
///     attribute "typ" of element "arg" is unknown and passed over (2 times); did you mean "type"?
///
/// It is a warning where a run loses something of its kernels by it. That a kernel has no name is
/// said by others. A file that cannot be read any longer makes no findings beyond those up to
/// there.
void lookAtKernelXml(const std::string& path, Findings& findings);

} // namespace consolidator::inspect
