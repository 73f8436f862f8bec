#include "query/NearestNames.h"

#include "query/NameDistance.h"
#include "shared/Printable.h"

#include <algorithm>
#include <optional>

namespace consolidator {

NearestNames::NearestNames(std::string_view wanted) : wanted_(wanted) {}

void NearestNames::add(std::string_view name) {
    const std::optional<std::size_t> distance = typoDistance(wanted_, name);
    const auto isName = [name](const auto& known) { return known.second == name; };
    if (!distance || std::ranges::any_of(nearest_, isName)) {
        return;
    }
    const auto isFarther = [distance](const auto& known) { return known.first > *distance; };
    nearest_.insert(std::ranges::find_if(nearest_, isFarther), {*distance, name});
    if (nearest_.size() > most) {
        nearest_.pop_back();
    }
}

std::vector<std::string_view> NearestNames::names() const {
    std::vector<std::string_view> result;
    result.reserve(nearest_.size());
    for (const auto& [distance, name] : nearest_) {
        result.push_back(name);
    }
    return result;
}

std::string NearestNames::question() const {
    std::string text;
    for (std::size_t i = 0; i < nearest_.size(); ++i) {
        const bool isLast = i + 1 == nearest_.size();
        text += i == 0 ? "; did you mean " : isLast ? " or " : ", ";
        text += quotedShortPrintable(nearest_[i].second);
    }
    return text.empty() ? text : text + '?';
}

} // namespace consolidator
