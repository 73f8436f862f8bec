#include "shared/schemas/Binding.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace lmx60 {

std::optional<std::uint64_t> unsignedNumber(std::string_view text, std::uint64_t largest) {
    constexpr std::string_view whiteSpace = " \t\n\r";
    // A text of nothing but white space becomes empty, and behind that npos + 1 is 0.
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(whiteSpace)));
    text = text.substr(0, text.find_last_not_of(whiteSpace) + 1);
    // std::from_chars() takes no sign for an unsigned number: a minus is refused by it, and so
    // would be a plus.
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number > largest) {
        return std::nullopt;
    }
    return number;
}

bool assign(Attribute<std::string>& attribute, std::string_view text) {
    attribute.value = text;
    attribute.present = true;
    return true;
}

bool assign(Attribute<std::uint32_t>& attribute, std::string_view text) {
    const auto number = unsignedNumber(text, std::numeric_limits<std::uint32_t>::max());
    if (number) {
        attribute.value = static_cast<std::uint32_t>(*number);
        attribute.present = true;
    }
    return number.has_value();
}

std::string textOf(const Attribute<std::string>& attribute) {
    return attribute.value;
}

std::string textOf(const Attribute<std::uint32_t>& attribute) {
    return std::to_string(attribute.value);
}

const ElementKind& textKind() {
    static constexpr ElementKind kind{.isText = true};
    return kind;
}

} // namespace lmx60
