// A list in which no two added elements have the same key, however long it grows.
#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

namespace consolidator {

/// Elements in the order in which they came, found by key in constant time on average.
///
/// The first element of a key wins: findOrAdd() never adds a second one. append() does not look,
/// for elements that come from a file and have to stay as they are there.
///
/// KeyOf is a stateless function object that gives an element's key, as a view or a reference; the
/// key of an element must not change while it is in the list. A project holds a million registers,
/// so the index keeps no copy of a key: it maps the key's hash to the element's position. It is
/// filled when it is first needed, which spares a list that is only read and written again from
/// having one.
template <typename Element, typename KeyOf>
class UniqueList {
public:
    using Key = std::invoke_result_t<KeyOf, const Element&>;

    UniqueList() = default;
    ~UniqueList() = default;

    // A copy makes an index of its own when it needs one, which most copies never do.
    UniqueList(const UniqueList& other) : items_(other.items_) {}
    UniqueList& operator=(const UniqueList& other) {
        UniqueList copy(other);
        swap(copy);
        return *this;
    }

    // A list that was moved from must not believe that it still has indexed items.
    UniqueList(UniqueList&& other) noexcept { swap(other); }
    UniqueList& operator=(UniqueList&& other) noexcept {
        swap(other);
        return *this;
    }

    const std::vector<Element>& items() const { return items_; }

    /// The first element with this key, or null. The pointer holds until the next element comes.
    Element* find(const Key& key) {
        indexNewItems();
        const auto position = positionOf(key, hashOf(key));
        return position == none ? nullptr : &items_[position];
    }

    /// Returns the first element with this key; if there is none, appends make() first, whose key
    /// must be `key`. The second value tells whether it was appended.
    template <typename Make>
    std::pair<Element&, bool> findOrAdd(const Key& key, Make make) {
        indexNewItems();
        const std::size_t hash = hashOf(key);
        const std::size_t position = positionOf(key, hash);
        if (position != none) {
            return {items_[position], false};
        }
        items_.push_back(make());
        positions_.emplace(hash, items_.size() - 1);
        indexed_ = items_.size();
        return {items_.back(), true};
    }

    /// Appends the element, whether or not its key is there already.
    Element& append(Element element) {
        items_.push_back(std::move(element));
        return items_.back();
    }

    /// Calls change(element) for each element in order; it must leave the key as it is.
    template <typename Change>
    void changeEach(Change change) {
        for (Element& element : items_) {
            change(element);
        }
    }

    /// Calls change(items) on the whole list, which may do anything with it, keys included.
    template <typename Change>
    void changeAll(Change change) {
        change(items_);
        positions_.clear();
        indexed_ = 0;
    }

    void clear() {
        changeAll([](auto& items) { items.clear(); });
    }

    void swap(UniqueList& other) noexcept {
        items_.swap(other.items_);
        positions_.swap(other.positions_);
        std::swap(indexed_, other.indexed_);
    }

private:
    static constexpr auto none = static_cast<std::size_t>(-1);

    static std::size_t hashOf(const Key& key) { return std::hash<std::remove_cvref_t<Key>>()(key); }

    std::size_t positionOf(const Key& key, std::size_t hash) const {
        const auto [first, last] = positions_.equal_range(hash);
        for (auto entry = first; entry != last; ++entry) {
            if (KeyOf()(items_[entry->second]) == key) {
                return entry->second;
            }
        }
        return none;
    }

    /// Only the first element of a key is indexed, so a file full of equal keys stays harmless.
    void indexNewItems() {
        for (; indexed_ < items_.size(); ++indexed_) {
            const Key key = KeyOf()(items_[indexed_]);
            const std::size_t hash = hashOf(key);
            if (positionOf(key, hash) == none) {
                positions_.emplace(hash, indexed_);
            }
        }
    }

    std::vector<Element> items_;
    std::unordered_multimap<std::size_t, std::size_t> positions_; ///< Hash of key to position.
    std::size_t indexed_ = 0; ///< So many items from the front are in the index.
};

} // namespace consolidator
