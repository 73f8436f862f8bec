#include "readers/HardwareNames.h"

#include "model/KeyedHash.h"

#include <utility>

namespace consolidator {

namespace {

constexpr std::size_t slotsAtFirst = 64;

/// The low bits of the hash choose the slot, these distinguish the names in it.
std::uint32_t highBits(std::uint64_t hash) {
    return static_cast<std::uint32_t>(hash >> 32);
}

} // namespace

HardwareNames::HardwareNames(const std::vector<Kernel>& kernels)
    : filter_((std::size_t{1} << filterBits) / 64), slots_(slotsAtFirst) {
    std::vector<Entry> entries;
    std::vector<std::uint32_t> lastKernels; // of each name, which spares most repeated entries
    const auto add = [&](const Variable& variable, std::uint32_t kernel) {
        const std::uint32_t number = numberOrAdd(variable.hardwareName);
        if (number == lastKernels.size()) {
            lastKernels.push_back(none);
        }
        if (std::exchange(lastKernels[number], kernel) != kernel) {
            entries.push_back({number, kernel});
        }
    };
    for (std::uint32_t i = 0; i < kernels.size(); ++i) {
        for (const Variable& argument : kernels[i].arguments()) {
            add(argument, i);
        }
        for (const Variable& variable : kernels[i].variables()) {
            add(variable, i);
        }
    }
    listKernels(entries);
}

std::uint32_t HardwareNames::numberOf(std::string_view name) const {
    return slots_[placeOf(name, keyHash(name))].number;
}

std::uint32_t HardwareNames::numberOrAdd(std::string_view name) {
    const std::uint64_t hash = keyHash(name);
    const std::size_t place = placeOf(name, hash);
    if (slots_[place].number != none) {
        return slots_[place].number;
    }
    const auto number = static_cast<std::uint32_t>(names_.size());
    names_.push_back(name);
    const std::uint64_t bit = filterBit(name);
    filter_[bit / 64] |= std::uint64_t{1} << (bit % 64);
    slots_[place] = {highBits(hash), number};
    if (2 * names_.size() > slots_.size()) {
        grow();
    }
    return number;
}

std::size_t HardwareNames::placeOf(std::string_view name, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = static_cast<std::size_t>(hash) & mask;
    for (; slots_[place].number != none; place = (place + 1) & mask) {
        if (slots_[place].hash == highBits(hash) && names_[slots_[place].number] == name) {
            break;
        }
    }
    return place;
}

void HardwareNames::grow() {
    slots_.assign(2 * slots_.size(), Slot());
    for (std::uint32_t number = 0; number < names_.size(); ++number) {
        const std::uint64_t hash = keyHash(names_[number]);
        slots_[placeOf(names_[number], hash)] = {highBits(hash), number};
    }
}

void HardwareNames::listKernels(std::span<const Entry> entries) {
    // Counted first, then put in place: each name's kernels keep the order in which they came.
    starts_.assign(names_.size() + 1, 0);
    for (const Entry& entry : entries) {
        ++starts_[entry.number + 1];
    }
    for (std::size_t number = 0; number < names_.size(); ++number) {
        starts_[number + 1] += starts_[number];
    }
    kernels_.resize(entries.size());
    std::vector<std::uint32_t> next = starts_;
    for (const Entry& entry : entries) {
        kernels_[next[entry.number]++] = entry.kernel;
    }
}

} // namespace consolidator
