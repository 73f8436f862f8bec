// Reader of the kernel description XML (kernel.xml) of high-level synthesis: the kernels' arguments
// and when they start and stop.
//
// Of the document it takes only
//
//     <project> <platform> <device> <core>
//       <kernel name="scale_rows">
//         <arg name="input_r" type="int*" …/>
//
// in document order, wherever the kernel stands. An argument's name is that of its hardware port;
// its source name is without the "_r" that a reserved word got, see HdlReservedWords.h.
//
// Every kernel gets two conditions: it starts when its start port is 1, and stops when its done
// port is 1.
//
// The arguments of a document's kernels add up: the second kernel has the first one's arguments in
// front of its own, and so on. As the first argument of a source name wins, with its type, so does
// that of an earlier kernel. Databases in use were made so; it stays. It also makes databases grow
// with the square of the document. In memory the kernels share their arguments: see ArgumentList.h.
//
// The whole document as a tree is Mekto::Project (shared/schemas/KernelDescription.h). The reader
// does not build it: a tree costs up to a hundred times the bytes of its document, most of it
// unused here.
#pragma once

#include "consolidated/InputFile.h"
#include "readers/HdlReservedWords.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator {

class KernelFile final : public InputFile {
public:
    using InputFile::InputFile;

    /// Appends the document's kernels, without types. Fails, with a message and an unchanged list,
    /// when the document cannot be read.
    bool parse() override;

    /// The mappings between port and source names, over this reader's own set of reserved words.
    std::string sourceName(std::string_view hardwareName) const;
    std::string hardwareName(std::string_view sourceName) const;

private:
    bool stopUnread(std::uint64_t atLine, const std::string& reason);

    HdlReservedWords reservedWords_;
};

} // namespace consolidator
