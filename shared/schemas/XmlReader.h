// Reads an XML document into a tree of bound elements, or into one object as it streams by (see
// Binding.h).
//
// The document must be well-formed. Elements and attributes that no table names are skipped, with
// all that they contain.
//
// A document type counts as far as it stands in the document: its entities are expanded, parameter
// entities too, and elements get the default values that it declares. Nothing outside the document
// is ever fetched. A reference to an external entity reads as nothing in text and is a fault in an
// attribute. So is a reference to an entity that is not declared at all, unless what is outside may
// declare it: there is an external subset, or a reference to a parameter entity. Then it reads as
// nothing in either place. Declarations behind a reference to an external parameter entity do not
// count.
//
// So that a small document cannot become large: what its entities add may be up to 1 MiB, or 4
// times the document, what default values add up to 1 MiB and 100 times the document, and a
// document type may declare 2^15 attributes and 1000 entities that refer to others. Beyond it, the
// document is refused as unsafe.
//
// The document comes in blocks, from files or pipes of any size, and its nesting may be as deep as
// memory allows: open elements are kept in a list, not on the call stack.
#pragma once

#include "shared/schemas/Binding.h"

#include <cstdint>
#include <istream>
#include <span>
#include <string>
#include <string_view>

namespace lmx60 {

/// Reads the document from `stream` to its end into `root`, an empty object of the class that
/// `kind` belongs to, whose element has the name `rootName`. Throws c_lmx_exception, with
/// `documentName` in its text, when it cannot; `root` then holds what came before the fault.
void readDocument(std::istream& stream, const std::string& documentName, std::string_view rootName,
                  const ElementKind& kind, void* root);

/// Looks on while a document streams by, of which nothing is kept.
class DocumentWatcher {
public:
    /// An element that the tables know.
    struct Element {
        std::string_view name; ///< The table's own, or the root's, and valid as long as they are.
        const ElementKind& kind;
    };

    DocumentWatcher() = default;
    DocumentWatcher(const DocumentWatcher&) = delete;
    DocumentWatcher& operator=(const DocumentWatcher&) = delete;
    virtual ~DocumentWatcher() = default;

    /// Such an element begins in a line, counted from 1, with attributes of these names, known or
    /// not, each once.
    virtual void onElement(const Element& element, std::uint64_t line,
                           std::span<const std::string_view> attributes) = 0;

    /// An element begins in `parent` whose table does not name it. It is passed over with all that
    /// is in it.
    virtual void onUnknownElement(const Element& parent, std::uint64_t line,
                                  std::string_view name) = 0;
};

/// Goes through a document as readDocument() does, but for the values of attributes, which are not
/// looked at. Throws as it does, and passes on what the watcher throws.
void watchDocument(std::istream& stream, const std::string& documentName, std::string_view rootName,
                   const ElementKind& kind, DocumentWatcher& watcher);

} // namespace lmx60
