// How element classes are bound to XML: one table of attributes and one of children per element.
//
// An element class is a plain struct. Its attributes are fields of type Attribute, its children
// vectors of child elements (or of strings, for child elements that hold only text). Its tables map
// names to fields; reading, writing and adding an element all go by them:
//
//     struct Host {
//         Attribute<std::string> architecture;
//         static const lmx60::ElementKind& kind();
//     };
//
//     const ElementKind& Host::kind() {
//         static constexpr std::array attributes{attribute<&Host::architecture>("architecture")};
//         static constexpr ElementKind kind{attributes, {}};
//         return kind;
//     }
//
// A reader that needs little of a document keeps no tree: all its tables belong to one class, the
// rows of their children are of the kind inPlace(), and a table's end() takes what has been read.
//
// The tables hold type-erased functions over `void*`, which always points to an object of the class
// that the table belongs to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace lmx60 {

/// An attribute's value, and whether the document gave it. An absent one is empty or zero.
template <typename Value>
struct Attribute {
    Value value{};
    bool present = false;

    bool operator==(const Attribute&) const = default;
};

/// Reads an unsigned decimal number that fills the whole text but for white space around it. A "+"
/// may stand in front. Nothing if it is anything else, or larger than `largest`.
std::optional<std::uint64_t> unsignedNumber(std::string_view text, std::uint64_t largest);

/// Convert an attribute's text into its field; false if it is no value of the field's type.
bool assign(Attribute<std::string>& attribute, std::string_view text);
bool assign(Attribute<std::uint32_t>& attribute, std::string_view text);

/// An attribute's value as text.
std::string textOf(const Attribute<std::string>& attribute);
std::string textOf(const Attribute<std::uint32_t>& attribute);

struct ElementKind;

/// One attribute of an element class.
struct AttributeRow {
    std::string_view name;
    bool (*assign)(void* element, std::string_view text);
    std::optional<std::string> (*text)(const void* element); ///< Nothing for an absent attribute.
};

/// One kind of child elements of an element class.
struct ChildRow {
    std::string_view name;
    const ElementKind& (*kind)();
    void* (*append)(void* element); ///< Adds an empty child and returns it.
    std::size_t (*count)(const void* element);
    const void* (*at)(const void* element, std::size_t index);
};

/// A namespace that an element declares: xmlns:PREFIX="URI", or xmlns="URI" for an empty prefix,
/// which alone may have an empty URI.
struct NamespaceDeclaration {
    std::string_view prefix;
    std::string_view uri;
};

/// The tables of one element class. A class that holds only text has no rows.
struct ElementKind {
    std::span<const AttributeRow> attributes = {};
    std::span<const ChildRow> children = {};
    bool isText = false; ///< The element is a std::string.

    /// Called once an element has been read, with its attributes and children. May throw Refusal.
    void (*end)(void* element) = nullptr;

    /// For writing only; readers look at no namespaces.
    std::span<const NamespaceDeclaration> namespaces = {};
};

/// The row of children that are read into the object of their parent, each over the one before it,
/// with the tables `kind` of the same class. For reading only.
constexpr ChildRow inPlace(std::string_view name, const ElementKind& (*kind)()) {
    return {.name = name,
            .kind = kind,
            .append = [](void* element) { return element; },
            .count = nullptr,
            .at = nullptr};
}

/// Kind of an element that holds only text.
const ElementKind& textKind();

/// The class and the type of a member, from a pointer to it.
template <typename Member>
struct MemberOf;
template <typename Class, typename Type>
struct MemberOf<Type Class::*> {
    using Owner = Class;
    using Value = Type;
};

/// An end() that calls the member function `member` of the tables' class.
template <auto member>
void call(void* element) {
    (static_cast<typename MemberOf<decltype(member)>::Owner*>(element)->*member)();
}

/// The row of the attribute that the field `member` holds.
template <auto member>
constexpr AttributeRow attribute(std::string_view name) {
    using Owner = typename MemberOf<decltype(member)>::Owner;
    return {.name = name,
            .assign =
                [](void* element, std::string_view text) {
                    return assign(static_cast<Owner*>(element)->*member, text);
                },
            .text = [](const void* element) -> std::optional<std::string> {
                const auto& field = static_cast<const Owner*>(element)->*member;
                return field.present ? std::optional(textOf(field)) : std::nullopt;
            }};
}

/// The row of the children that the vector `member` holds.
template <auto member>
constexpr ChildRow child(std::string_view name) {
    using Owner = typename MemberOf<decltype(member)>::Owner;
    using Child = typename MemberOf<decltype(member)>::Value::value_type;
    ChildRow row{.name = name,
                 .kind = nullptr,
                 .append = [](void* element) -> void* {
                     return &(static_cast<Owner*>(element)->*member).emplace_back();
                 },
                 .count =
                     [](const void* element) {
                         return (static_cast<const Owner*>(element)->*member).size();
                     },
                 .at = [](const void* element, std::size_t index) -> const void* {
                     return &(static_cast<const Owner*>(element)->*member)[index];
                 }};
    if constexpr (std::is_same_v<Child, std::string>) {
        row.kind = textKind;
    } else {
        row.kind = Child::kind;
    }
    return row;
}

} // namespace lmx60
