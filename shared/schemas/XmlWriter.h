// Writes a tree of bound elements (see Binding.h) as an XML document.
//
// The document begins with an XML declaration and is encoded in UTF-8. Attributes come in the order
// of their table, absent ones not at all, behind the namespaces that their element declares;
// children come kind by kind in the order of theirs. Each tag stands on a line of its own, but for
// the text between a text element's tags:
//
//     <?xml version="1.0" encoding="UTF-8"?>
//     <project name="demo">
//     <platform name="board">
//     <description>a &lt; b</description>
//     </platform>
//     </project>
#pragma once

#include "shared/schemas/Binding.h"

#include <cstddef>
#include <map>
#include <ostream>
#include <span>
#include <string_view>
#include <vector>

namespace lmx60 {

/// The namespaces that are declared where an element is being written. It keeps the texts of the
/// declarations as they are given, which must outlive it.
class NamespaceScope {
public:
    /// An element begins, within those that have begun and not ended.
    void enter();
    /// The innermost element has ended, and its declarations with it.
    void leave();

    /// Adds a declaration to the innermost element. False if it is in scope already: the prefix
    /// stands for this URI, by the element itself or one around it. False, too, if the element has
    /// declared the prefix for another URI, as one attribute cannot stand twice in a tag.
    bool declare(const NamespaceDeclaration& declaration);

private:
    std::map<std::string_view, std::vector<std::string_view>> uris_; ///< By prefix, innermost last.
    std::vector<std::string_view> declared_; ///< Prefixes, element by element.
    std::vector<std::size_t> elements_;      ///< Where those of each open element begin.
};

/// Writes those of an element's namespace declarations that are not in scope yet as attributes,
/// each with a blank in front, and adds them to the scope, of which the element is the innermost. A
/// default namespace that is empty is in scope where there is no other.
// NOLINTNEXTLINE(readability-identifier-naming)
void conditionally_write_ns_attrs(std::ostream& out,
                                  std::span<const NamespaceDeclaration> declarations,
                                  NamespaceScope& scope);

/// Writes `root`, an object of the class that `kind` belongs to, as the element `rootName`. All
/// values must be UTF-8 without control characters other than white space, as values that were read
/// are. What is written reads back as an equal tree. The root declares `namespaces` and then those
/// of its kind.
void writeDocument(std::ostream& out, std::string_view rootName, const ElementKind& kind,
                   const void* root, std::span<const NamespaceDeclaration> namespaces = {});

} // namespace lmx60
