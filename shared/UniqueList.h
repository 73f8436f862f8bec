// A list in which no two added elements have the same key, however long it grows.
#pragma once

#include "shared/KeyedHash.h"

#include <algorithm>
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
/// lists each. So the index keeps no copy of a key but the element's position and half of its hash,
/// eight bytes, and is made when it is first needed: a list that is only read and written again has
/// none. The hash is there for speed: almost every slot that a search passes belongs to another key
/// and is told by it, without a look at the element, which lies somewhere else in memory.
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
        const std::uint32_t position = slotOf(key, hashOf(key))->position;
        return position == none ? nullptr : &items_[position];
    }

    /// Returns the first element with this key; if there is none, appends make() first, whose key
    /// must be `key` and may take over what `key` is a view of. The second value tells whether it
    /// was appended.
    template <typename Make>
    std::pair<Element&, bool> findOrAdd(const Key& key, Make make) {
        const std::uint32_t hash = hashOf(key);
        Slot* const slot = slotOf(key, hash);
        if (slot->position != none) {
            return {items_[slot->position], false};
        }
        items_.push_back(make());
        *slot = {static_cast<std::uint32_t>(items_.size() - 1), hash};
        ++index_->used;
        index_->upTo = items_.size();
        return {items_.back(), true};
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
    static constexpr auto none = static_cast<std::uint32_t>(-1);

    struct Slot {
        std::uint32_t position = none; ///< Of an element, or none.
        std::uint32_t hash = 0;        ///< Of its key.
    };

    /// A hash table with open addressing and linear probing. Its size is a power of two.
    struct Index {
        std::vector<Slot> slots;
        std::size_t used = 0; ///< Slots that hold a position.
        std::size_t upTo = 0; ///< The number of items, from the front, in the index.
    };

    /// The element's key: of the element's own, and not of the function object that gives it.
    static Key keyOf(const Element& element) { return KeyOf()(element); }

    /// Half of the hash has bits enough: no index has more slots than there are positions.
    static std::uint32_t hashOf(const Key& key) { return static_cast<std::uint32_t>(keyHash(key)); }

    /// The slot that holds the position of the first element with this key, or the free slot where
    /// it belongs. Brings the index up to date first, with room for one more.
    Slot* slotOf(const Key& key, std::uint32_t hash) {
        indexNewItems();
        makeRoom();
        return probe(key, hash);
    }

    Slot* probe(const Key& key, std::uint32_t hash) {
        return firstSlot(hash, [&](const Slot& slot) {
            return slot.hash == hash && keyOf(items_[slot.position]) == key;
        });
    }

    /// The first slot that is free or wanted, from where elements of this hash begin.
    template <typename IsWanted>
    Slot* firstSlot(std::uint32_t hash, IsWanted isWanted) {
        std::vector<Slot>& slots = index_->slots;
        const std::size_t mask = slots.size() - 1;
        std::size_t place = hash & mask;
        while (slots[place].position != none && !isWanted(slots[place])) {
            place = (place + 1) & mask;
        }
        return &slots[place];
    }

    /// Only the first element of a key is indexed, so a file full of equal keys stays harmless.
    void indexNewItems() {
        if (!index_) {
            index_ = std::make_unique<Index>();
        }
        for (; index_->upTo < items_.size(); ++index_->upTo) {
            makeRoom();
            const Key& key = keyOf(items_[index_->upTo]);
            const std::uint32_t hash = hashOf(key);
            Slot* const slot = probe(key, hash);
            if (slot->position == none) {
                *slot = {static_cast<std::uint32_t>(index_->upTo), hash};
                ++index_->used;
            }
        }
    }

    /// Keeps a quarter of the slots free.
    void makeRoom() {
        constexpr std::size_t fewest = 8;
        std::vector<Slot>& slots = index_->slots;
        if (4 * (index_->used + 1) <= 3 * slots.size()) {
            return;
        }
        const std::vector<Slot> old =
            std::exchange(slots, std::vector<Slot>(std::max(fewest, 2 * slots.size())));
        for (const Slot& slot : old) {
            if (slot.position != none) {
                *firstSlot(slot.hash, [](const Slot&) { return false; }) = slot;
            }
        }
    }

    std::vector<Element> items_;
    std::unique_ptr<Index> index_; ///< Null until an element is looked for.
};

} // namespace consolidator
