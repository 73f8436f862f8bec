// Writes a tree of bound elements (see Binding.h) as an XML document.
//
// The document begins with an XML declaration and is encoded in UTF-8. Attributes come in the order
// of their table, absent ones not at all; children come kind by kind in the order of theirs. Each
// tag stands on a line of its own, but for the text between a text element's tags:
//
//     <?xml version="1.0" encoding="UTF-8"?>
//     <project name="demo">
//     <platform name="board">
//     <description>a &lt; b</description>
//     </platform>
//     </project>
#pragma once

#include "shared/schemas/Binding.h"

#include <ostream>
#include <string_view>

namespace lmx60 {

/// Writes `root`, an object of the class that `kind` belongs to, as the element `rootName`. All
/// values must be UTF-8 without control characters other than white space, as values that were read
/// are. What is written reads back as an equal tree.
void writeDocument(std::ostream& out, std::string_view rootName, const ElementKind& kind,
                   const void* root);

} // namespace lmx60
