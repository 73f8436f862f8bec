// A list in which no two added elements have the same key, however long it grows.
#pragma once

#include "shared/HashIndex.h"
#include "shared/KeyedHash.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace consolidator {

/// Elements in the order in which they came, found by key in constant time on average.
///
/// The first element of a key wins: findOrAdd() never adds a second one. append() does not look,
/// for elements that come from a file and have to stay as they are there.
///
/// KeyOf is a stateless function object that gives an element's key, as a view or a reference; the
/// key of an element must not change while it is in the list. keyHash(key) hashes it.
///
/// A project holds a million registers, and a hostile file millions of empty kernels with five
/// lists each. So the index keeps no copy of a key (HashIndex), and is made when it is first
/// needed: a list that is only read and written again has none.
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

    UniqueList(UniqueList&&) noexcept = default;
    UniqueList& operator=(UniqueList&&) noexcept = default;

    const std::vector<Element>& items() const { return items_; }

    /// The first element with this key, or null. The pointer holds until the next element comes.
    Element* find(const Key& key) {
        indexNewItems();
        const std::uint32_t position = index_->positions.find(keyHash(key), has(key));
        return position == Positions::none ? nullptr : &items_[position];
    }

    /// Returns the first element with this key; if there is none, appends make() first, whose key
    /// must be `key` and may take over what `key` is a view of. The second value tells whether it
    /// was appended.
    template <typename Make>
    std::pair<Element&, bool> findOrAdd(const Key& key, Make make) {
        indexNewItems();
        const auto [position, isNew] = index_->positions.findOrAdd(keyHash(key), has(key), [&] {
            items_.push_back(make());
            return static_cast<std::uint32_t>(items_.size() - 1);
        });
        index_->upTo = items_.size();
        return {items_[position], isNew};
    }

    /// The position of the element that find() or findOrAdd() gave.
    std::size_t positionOf(const Element& element) const {
        return static_cast<std::size_t>(&element - items_.data());
    }

    /// The element at a position, to be changed but for its key.
    Element& at(std::size_t position) { return items_[position]; }

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
        index_.reset();
    }

    void clear() {
        changeAll([](auto& items) { items.clear(); });
    }

    void swap(UniqueList& other) noexcept {
        items_.swap(other.items_);
        index_.swap(other.index_);
    }

private:
    using Positions = HashIndex<3>;

    struct Index {
        Positions positions;
        std::size_t upTo = 0; ///< The number of items, from the front, in the index.
    };

    /// The element's key: of the element's own, and not of the function object that gives it.
    static Key keyOf(const Element& element) { return KeyOf()(element); }

    /// Whether the element at a position has this key.
    auto has(const Key& key) const {
        return [this, &key](std::uint32_t position) { return keyOf(items_[position]) == key; };
    }

    /// Only the first element of a key is indexed, so a file full of equal keys stays harmless.
    void indexNewItems() {
        if (!index_) {
            index_ = std::make_unique<Index>();
        }
        for (; index_->upTo < items_.size(); ++index_->upTo) {
            const Key& key = keyOf(items_[index_->upTo]);
            index_->positions.findOrAdd(keyHash(key), has(key), [this] {
                return static_cast<std::uint32_t>(index_->upTo);
            });
        }
    }

    std::vector<Element> items_;
    std::unique_ptr<Index> index_; ///< Null until an element is looked for.
};

} // namespace consolidator
