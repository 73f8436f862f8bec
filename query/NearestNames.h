// Names that someone may have meant who wrote another one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator {

/// The names, of those that are added one by one, that are nearest to the wanted one, by
/// typoDistance().
///
///     NearestNames nearest("scale_row");
///     nearest.add("scale_rows");
///     nearest.question() // "; did you mean \"scale_rows\"?"
class NearestNames {
public:
    /// So many are kept.
    static constexpr std::size_t most = 3;

    /// Neither the wanted name nor those that are added are copied: their texts must outlive this
    /// object.
    explicit NearestNames(std::string_view wanted);

    /// Takes a name into account; one that differs too much, or was added before, changes nothing.
    /// Too much is more than a quarter of the wanted name's bytes and one, or more than four;
    /// capital and small ASCII letters are the same.
    void add(std::string_view name);

    /// Whether no name that was added is near.
    bool empty() const { return nearest_.empty(); }

    /// The nearest first; of equally near ones the one that was added first.
    std::vector<std::string_view> names() const;

    /// A question to end a message with, with printable names; empty if there is no name.
    std::string question() const;

private:
    std::string_view wanted_;
    std::vector<std::pair<std::size_t, std::string_view>> nearest_; ///< Distance and name.
};

} // namespace consolidator
