// Reads an XML document into a tree of bound elements, or into one object as it streams by (see
// Binding.h).
//
// The document must be well-formed. Elements and attributes that no table names are skipped, with
// all that they contain. Nothing outside the document is ever fetched, and a document type with
// declarations of its own is refused: entities and default values could make a small document
// expand without bound. With a document type that names an external one, a reference to an entity
// that is declared nowhere in the document reads as nothing.
//
// The document comes in blocks, from files or pipes of any size, and its nesting may be as deep as
// memory allows: open elements are kept in a list, not on the call stack.
#pragma once

#include "shared/schemas/Binding.h"

#include <istream>
#include <string>
#include <string_view>

namespace lmx60 {

/// Reads the document from `stream` to its end into `root`, an empty object of the class that
/// `kind` belongs to, whose element has the name `rootName`. Throws c_lmx_exception, with
/// `documentName` in its text, when it cannot; `root` then holds what came before the fault.
void readDocument(std::istream& stream, const std::string& documentName, std::string_view rootName,
                  const ElementKind& kind, void* root);

} // namespace lmx60
