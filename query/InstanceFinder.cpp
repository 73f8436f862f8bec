#include "query/InstanceFinder.h"

namespace consolidator {

namespace {

/// The number of nets that are searched without an automaton. With 4,096 paths of 40 bytes making
/// it takes about as long as searching ten nets of 80 bytes; with a few paths neither is noticed.
constexpr std::size_t fewNets = 8;

std::vector<PathOwners::Entry> placesOf(const std::vector<std::string>& paths) {
    std::vector<PathOwners::Entry> entries;
    entries.reserve(paths.size());
    for (const std::string& path : paths) {
        entries.emplace_back(path, static_cast<std::uint32_t>(entries.size()));
    }
    return entries;
}

} // namespace

InstanceFinder::Automaton::Automaton(const std::vector<std::string>& paths)
    : places(placesOf(paths)), finder(places.paths()) {}

bool InstanceFinder::isBetter(std::uint32_t position,
                              const std::optional<std::uint32_t>& than) const {
    if (!than) {
        return true;
    }
    const std::size_t length = (*paths_)[position].size();
    const std::size_t thanLength = (*paths_)[*than].size();
    return length == thanLength ? position < *than : length > thanLength;
}

std::optional<std::uint32_t> InstanceFinder::instanceOf(std::string_view net) {
    std::optional<std::uint32_t> longest;
    if (!automaton_ && searched_++ < fewNets) {
        for (std::uint32_t position = 0; position < paths_->size(); ++position) {
            if (isBetter(position, longest) && net.find((*paths_)[position]) != net.npos) {
                longest = position;
            }
        }
        return longest;
    }
    if (!automaton_) {
        automaton_.emplace(*paths_);
    }
    automaton_->finder.forEachIn(net, [&](std::uint32_t number) {
        // A database that was not made by the consolidator may hold a path twice.
        const std::uint32_t position = automaton_->places.ownersOf(number).front();
        if (isBetter(position, longest)) {
            longest = position;
        }
        return true;
    });
    return longest;
}

} // namespace consolidator
