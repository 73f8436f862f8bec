#include "shared/schemas/XmlWriter.h"

#include <algorithm>
#include <optional>
#include <string>

namespace lmx60 {

namespace {

/// An element whose children are being written.
struct Open {
    std::string_view name;
    const ElementKind* kind;
    const void* element;
    std::size_t row = 0;   ///< The kind of children that is due.
    std::size_t child = 0; ///< The child of that kind that is due.
};

/// Writes text so that a reader gets back every character of it. White space other than blanks is
/// written as references, since readers turn it into blanks in attributes, and carriage returns
/// into newlines everywhere.
void writeEscaped(std::ostream& out, std::string_view text) {
    for (const char c : text) {
        switch (c) {
        case '&':
            out << "&amp;";
            break;
        case '<':
            out << "&lt;";
            break;
        case '>':
            out << "&gt;";
            break;
        case '"':
            out << "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            out << "&#" << std::to_string(static_cast<int>(c)) << ';';
            break;
        default:
            out << c;
            break;
        }
    }
}

/// Begins an element, which stays the innermost of `scope`.
void writeStartTag(std::ostream& out, const Open& open, NamespaceScope& scope,
                   std::span<const NamespaceDeclaration> more = {}) {
    out << '<' << open.name;
    scope.enter();
    conditionally_write_ns_attrs(out, more, scope);
    conditionally_write_ns_attrs(out, open.kind->namespaces, scope);
    for (const AttributeRow& row : open.kind->attributes) {
        if (const std::optional<std::string> text = row.text(open.element)) {
            out << ' ' << row.name << "=\"";
            writeEscaped(out, *text);
            out << '"';
        }
    }
    out << '>';
}

void writeEndTag(std::ostream& out, const Open& open, NamespaceScope& scope) {
    out << "</" << open.name << ">\n";
    scope.leave();
}

/// The next child of the element that is due; nothing when all have been written.
std::optional<Open> nextChild(Open& parent) {
    for (; parent.row < parent.kind->children.size(); ++parent.row, parent.child = 0) {
        const ChildRow& row = parent.kind->children[parent.row];
        if (parent.child < row.count(parent.element)) {
            return Open{row.name, &row.kind(), row.at(parent.element, parent.child++)};
        }
    }
    return std::nullopt;
}

} // namespace

void NamespaceScope::enter() {
    elements_.push_back(declared_.size());
}

void NamespaceScope::leave() {
    for (; declared_.size() > elements_.back(); declared_.pop_back()) {
        uris_.at(declared_.back()).pop_back();
    }
    elements_.pop_back();
}

bool NamespaceScope::declare(const NamespaceDeclaration& declaration) {
    std::vector<std::string_view>& uris = uris_[declaration.prefix];
    const std::string_view current = uris.empty() ? std::string_view() : uris.back();
    const auto own = declared_.begin() + static_cast<std::ptrdiff_t>(elements_.back());
    if (current == declaration.uri ||
        std::find(own, declared_.end(), declaration.prefix) != declared_.end()) {
        return false;
    }
    uris.push_back(declaration.uri);
    declared_.push_back(declaration.prefix);
    return true;
}

// NOLINTNEXTLINE(readability-identifier-naming)
void conditionally_write_ns_attrs(std::ostream& out,
                                  std::span<const NamespaceDeclaration> declarations,
                                  NamespaceScope& scope) {
    for (const NamespaceDeclaration& declaration : declarations) {
        if (scope.declare(declaration)) {
            out << " xmlns" << (declaration.prefix.empty() ? "" : ":") << declaration.prefix
                << "=\"";
            writeEscaped(out, declaration.uri);
            out << '"';
        }
    }
}

void writeDocument(std::ostream& out, std::string_view rootName, const ElementKind& kind,
                   const void* root, std::span<const NamespaceDeclaration> namespaces) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    // Elements nest as deep as they like, so the open ones are kept in a list.
    std::vector<Open> open{{rootName, &kind, root}};
    NamespaceScope scope;
    writeStartTag(out, open.back(), scope, namespaces);
    out << '\n';
    while (!open.empty()) {
        const std::optional<Open> child = nextChild(open.back());
        if (!child) {
            writeEndTag(out, open.back(), scope);
            open.pop_back();
            continue;
        }
        writeStartTag(out, *child, scope);
        if (child->kind->isText) {
            writeEscaped(out, *static_cast<const std::string*>(child->element));
            writeEndTag(out, *child, scope);
        } else {
            out << '\n';
            open.push_back(*child);
        }
    }
}

} // namespace lmx60
