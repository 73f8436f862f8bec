#include "readers/KnownNets.h"

#include "shared/KeyedHash.h"
#include "shared/Prefetch.h"

#include <cstring>
#include <utility>

namespace consolidator {

namespace {

using Length = std::uint16_t;
static_assert(KnownNets::longestNet <= static_cast<Length>(-1));

} // namespace

KnownNets::KnownNets() : slots_(slotsAtFirst) {}

std::span<const KnownNets::Register> KnownNets::find(std::string_view net) const {
    return registersAt(slots_[slotOf(net, keyHash(net))]);
}

void KnownNets::findAll(std::span<Query> queries) const {
    const std::size_t mask = slots_.size() - 1;
    // Slots, then texts: what a round needs was asked for, for all nets, in the one before it.
    for (Query& query : queries) {
        query.hash = keyHash(query.net);
        prefetch(&slots_[query.hash & mask]);
    }
    for (const Query& query : queries) {
        const Slot& slot = slots_[query.hash & mask]; // mostly the right one
        if (slot.text != none) {
            prefetch(&texts_[slot.text]);
        }
    }
    for (Query& query : queries) {
        query.registers = registersAt(slots_[slotOf(query.net, query.hash)]);
    }
}

std::span<const KnownNets::Register> KnownNets::registersAt(const Slot& slot) const {
    if (slot.text == none) {
        return {};
    }
    return slot.single.kernel == none ? std::span(lists_[slot.single.position])
                                      : std::span(&slot.single, 1);
}

void KnownNets::add(std::string_view net, std::span<const Register> registers) {
    if (texts_.size() + sizeof(Length) + net.size() > none) {
        return; // no position could tell where its text is
    }
    const std::uint64_t hash = keyHash(net);
    Slot& slot = slots_[slotOf(net, hash)];
    slot = {upperHalf(hash), static_cast<std::uint32_t>(texts_.size()), registers.front()};
    if (registers.size() > 1) {
        slot.single = {none, static_cast<std::uint32_t>(lists_.size())};
        lists_.emplace_back(registers.begin(), registers.end());
    }
    const auto length = static_cast<Length>(net.size());
    const auto* const lengthBytes = reinterpret_cast<const char*>(&length);
    texts_.insert(texts_.end(), lengthBytes, lengthBytes + sizeof length);
    texts_.insert(texts_.end(), net.begin(), net.end());
    if (4 * ++used_ > 3 * slots_.size()) {
        grow();
    }
}

std::size_t KnownNets::slotOf(std::string_view net, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t slot = static_cast<std::size_t>(hash) & mask;
    for (; slots_[slot].text != none; slot = (slot + 1) & mask) {
        if (slots_[slot].hash == upperHalf(hash) && textAt(slots_[slot].text) == net) {
            break;
        }
    }
    return slot;
}

std::string_view KnownNets::textAt(std::size_t position) const {
    Length length = 0;
    // Texts follow each other without gaps, so a length may begin at any address.
    std::memcpy(&length, &texts_[position], sizeof length);
    return {texts_.data() + position + sizeof length, length};
}

void KnownNets::grow() {
    const std::vector<Slot> old = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
    for (const Slot& slot : old) {
        if (slot.text != none) {
            // Of the hash only the half is kept that does not choose the slot.
            const std::string_view net = textAt(slot.text);
            slots_[slotOf(net, keyHash(net))] = slot;
        }
    }
}

} // namespace consolidator
