#include "model/ArgumentList.h"

#include <algorithm>
#include <utility>

namespace consolidator {

std::span<const Variable> ArgumentList::Beginning::items() const {
    return list == nullptr ? std::span<const Variable>() : std::span(list->items()).first(count);
}

std::span<const Variable> ArgumentList::items() const {
    const auto* beginning = std::get_if<Beginning>(&items_);
    return beginning != nullptr ? beginning->items() : std::get<VariableList>(items_).items();
}

bool ArgumentList::sharesWith(const ArgumentList& other) const {
    const auto* mine = std::get_if<Beginning>(&items_);
    const auto* theirs = std::get_if<Beginning>(&other.items_);
    return mine != nullptr && theirs != nullptr && mine->list == theirs->list;
}

const Variable* ArgumentList::find(std::string_view sourceName) {
    const auto* beginning = std::get_if<Beginning>(&items_);
    if (beginning == nullptr) {
        return std::get<VariableList>(items_).find(sourceName);
    }
    if (beginning->items().empty()) {
        return nullptr;
    }
    // The list has its index, as its elements came by findOrAdd(): nothing in it changes, and other
    // threads may look into it.
    const Variable* const found = beginning->list->find(sourceName);
    const bool isMine = found != nullptr && beginning->list->positionOf(*found) < beginning->count;
    return isMine ? found : nullptr;
}

void ArgumentList::add(std::string_view sourceName, std::string_view hardwareName,
                       std::string_view typeText) {
    if (isShared() && find(sourceName) != nullptr) {
        return;
    }
    own().findOrAdd(sourceName, [&] { return Variable(sourceName, hardwareName, typeText); });
}

Variable& ArgumentList::append(Variable argument) {
    return own().append(std::move(argument));
}

void ArgumentList::merge(const ArgumentList& other) {
    if (sharesWith(other)) {
        std::size_t& count = std::get<Beginning>(items_).count;
        count = std::max(count, std::get<Beginning>(other.items_).count);
    } else if (other.isShared() && items().empty()) {
        items_ = other.items_;
    } else {
        for (const Variable& argument : other.items()) {
            add(argument.sourceName, argument.hardwareName, argument.typeText);
        }
    }
}

VariableList& ArgumentList::own() {
    if (const auto* beginning = std::get_if<Beginning>(&items_)) {
        VariableList copy;
        for (const Variable& argument : beginning->items()) {
            copy.append(argument);
        }
        items_ = std::move(copy);
    }
    return std::get<VariableList>(items_);
}

} // namespace consolidator
