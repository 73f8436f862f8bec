// Finds which of many instance paths occur in a text, in one pass over the text.
#pragma once

#include "shared/Marks.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

/// The string-matching automaton of Aho and Corasick ("Efficient string matching: an aid to
/// bibliographic search", Communications of the ACM 18, 1975) over a set of paths.
///
///     PathFinder finder(paths); // {"top/k_1", "top/k_10"}
///     finder.forEachIn("/top/k_10/x", [](std::uint32_t path) { return true; }); // 0, then 1
///
/// However many paths there are and however they are nested, a search takes time in proportion to
/// the text and the paths found. Paths and texts may hold any bytes.
///
/// The paths form a tree of their beginnings, numbered level by level, so that the children of a
/// node follow one another in the order of their bytes: a node needs only the number of its first
/// child. That makes 13 bytes for each byte of the paths that they do not share with the path
/// before, and no hash that a file could fill with collisions.
class PathFinder {
public:
    /// The paths must be in ascending order and distinct; the position of each is its number. They
    /// are not needed afterwards.
    explicit PathFinder(std::span<const std::string_view> paths);

    /// Calls visit(number) once for each path that occurs anywhere in the text, an empty path
    /// included, in the order in which the paths end there. visit returns whether to go on.
    template <typename Visit>
    void forEachIn(std::string_view text, Visit visit) {
        found_.clear();
        std::uint32_t node = root;
        if (!visitEndingAt(node, visit)) {
            return;
        }
        for (const char character : text) {
            node = next(node, static_cast<std::uint8_t>(character));
            if (!visitEndingAt(node, visit)) {
                return;
            }
        }
    }

private:
    static constexpr std::uint32_t root = 0;
    static constexpr auto none = static_cast<std::uint32_t>(-1);

    void growTree(std::span<const std::string_view> paths);
    std::uint32_t addNode(std::uint8_t label);
    void linkSuffixes();
    std::uint32_t childOf(std::uint32_t node, std::uint8_t label) const;
    std::uint32_t next(std::uint32_t node, std::uint8_t label) const;

    /// Visits the paths that the text of the node ends with, the longest first. Where one was found
    /// before, all shorter ones were.
    template <typename Visit>
    bool visitEndingAt(std::uint32_t node, Visit& visit) {
        for (std::uint32_t path = longest_[node]; path != none && found_.set(path);
             path = shorter_[path]) {
            if (!visit(path)) {
                return false;
            }
        }
        return true;
    }

    // Per node; the root, whose text is empty, is node 0.
    std::vector<std::uint8_t> labels_;      ///< The last byte of the node's text.
    std::vector<std::uint32_t> firstChild_; ///< Its children go up to the next node's first child.
    std::vector<std::uint32_t> suffix_;     ///< The node of the longest shorter end of its text.
    std::vector<std::uint32_t> longest_;    ///< The longest path that its text ends with.
    std::array<std::uint32_t, 256> starts_{}; ///< The root's children by byte, else the root.

    std::vector<std::uint32_t> shorter_; ///< Per path, the longest shorter one that it ends with.
    Marks found_;                        ///< The paths found in the text so far.
};

} // namespace consolidator
