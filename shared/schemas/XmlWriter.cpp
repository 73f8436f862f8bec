#include "shared/schemas/XmlWriter.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

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

void writeStartTag(std::ostream& out, const Open& open) {
    out << '<' << open.name;
    for (const AttributeRow& row : open.kind->attributes) {
        if (const std::optional<std::string> text = row.text(open.element)) {
            out << ' ' << row.name << "=\"";
            writeEscaped(out, *text);
            out << '"';
        }
    }
    out << '>';
}

void writeTextElement(std::ostream& out, const Open& open) {
    writeStartTag(out, open);
    writeEscaped(out, *static_cast<const std::string*>(open.element));
    out << "</" << open.name << ">\n";
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

void writeDocument(std::ostream& out, std::string_view rootName, const ElementKind& kind,
                   const void* root) {
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    // Elements nest as deep as they like, so the open ones are kept in a list.
    std::vector<Open> open{{rootName, &kind, root}};
    writeStartTag(out, open.back());
    out << '\n';
    while (!open.empty()) {
        const std::optional<Open> child = nextChild(open.back());
        if (!child) {
            out << "</" << open.back().name << ">\n";
            open.pop_back();
        } else if (child->kind->isText) {
            writeTextElement(out, *child);
        } else {
            writeStartTag(out, *child);
            out << '\n';
            open.push_back(*child);
        }
    }
}

} // namespace lmx60
