#include "shared/PathFinder.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>

namespace consolidator {

namespace {

/// A run of paths, first to last, that begin with the text of one node.
struct Run {
    std::size_t first;
    std::size_t last;
};

std::uint8_t byteAt(std::string_view text, std::size_t position) {
    return static_cast<std::uint8_t>(text[position]);
}

} // namespace

PathFinder::PathFinder(std::span<const std::string_view> paths)
    : shorter_(paths.size(), none), found_(paths.size()) {
    growTree(paths);
    linkSuffixes();
}

void PathFinder::growTree(std::span<const std::string_view> paths) {
    std::vector<Run> level{{0, paths.size()}};
    std::vector<Run> nextLevel;
    addNode(0);
    for (std::size_t depth = 0; !level.empty(); ++depth) {
        nextLevel.clear();
        for (auto [first, last] : level) {
            const std::size_t node = firstChild_.size();
            firstChild_.push_back(static_cast<std::uint32_t>(labels_.size()));
            if (first != last && paths[first].size() == depth) {
                longest_[node] = static_cast<std::uint32_t>(first);
                ++first; // the others of the run are longer
            }
            while (first != last) {
                const std::uint8_t label = byteAt(paths[first], depth);
                const std::uint32_t child = addNode(label);
                if (node == root) {
                    starts_[label] = child;
                }
                const std::size_t start = first;
                while (first != last && byteAt(paths[first], depth) == label) {
                    ++first;
                }
                nextLevel.push_back({start, first});
            }
        }
        level.swap(nextLevel);
    }
    firstChild_.push_back(static_cast<std::uint32_t>(labels_.size())); // where the last one's end
}

std::uint32_t PathFinder::addNode(std::uint8_t label) {
    if (labels_.size() == none) {
        throw std::length_error("the instance paths are too long");
    }
    labels_.push_back(label);
    longest_.push_back(none);
    return static_cast<std::uint32_t>(labels_.size() - 1);
}

void PathFinder::linkSuffixes() {
    // A suffix is shorter than the text, so its node comes earlier and is linked already.
    suffix_.assign(labels_.size(), root);
    for (std::uint32_t parent = root; parent < labels_.size(); ++parent) {
        for (std::uint32_t node = firstChild_[parent]; node < firstChild_[parent + 1]; ++node) {
            // The only shorter end of a single byte is the empty text, whose node is the root.
            if (parent != root) {
                suffix_[node] = next(suffix_[parent], labels_[node]);
            }
            const std::uint32_t inherited = longest_[suffix_[node]];
            if (longest_[node] == none) {
                longest_[node] = inherited;
            } else {
                shorter_[longest_[node]] = inherited;
            }
        }
    }
}

std::uint32_t PathFinder::childOf(std::uint32_t node, std::uint8_t label) const {
    // A byte that begins no path leads here again and again: it is looked up in one step. No node
    // has the root for a child, so the root stands for "none".
    if (node == root) {
        return starts_[label];
    }
    const std::uint32_t first = firstChild_[node];
    const std::uint32_t count = firstChild_[node + 1] - first;
    if (count == 1) { // most nodes: paths differ in few places
        return labels_[first] == label ? first : root;
    }
    const auto children = std::span(labels_).subspan(first, count);
    const auto child = std::ranges::lower_bound(children, label);
    return child == children.end() || *child != label
               ? root
               : first + static_cast<std::uint32_t>(child - children.begin());
}

std::uint32_t PathFinder::next(std::uint32_t node, std::uint8_t label) const {
    // Each step up makes the text shorter, and only a step down makes it longer, by one byte: over
    // a whole text the steps are at most twice its bytes.
    std::uint32_t child = childOf(node, label);
    while (child == root && node != root) {
        node = suffix_[node];
        child = childOf(node, label);
    }
    return child;
}

} // namespace consolidator
