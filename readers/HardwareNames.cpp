#include "readers/HardwareNames.h"

#include "shared/KeyedHash.h"

#include <utility>

namespace consolidator {

HardwareNames::HardwareNames(const std::vector<Kernel>& kernels)
    : filter_((std::size_t{1} << filterBits) / 64), slots_(slotsAtFirst) {
    std::vector<std::uint32_t> numbers;     // of all kernels' names, one kernel after the other
    std::vector<std::size_t> ends;          // of each kernel's numbers
    std::vector<std::uint32_t> lastKernels; // of each name, which spares most repeated numbers
    for (const Kernel& kernel : kernels) {
        const auto kernelNumber = static_cast<std::uint32_t>(ends.size());
        for (const auto* variables : {&kernel.arguments(), &kernel.variables()}) {
            for (const Variable& variable : *variables) {
                const std::uint32_t number = numberOrAdd(variable.hardwareName);
                if (number == lastKernels.size()) {
                    lastKernels.push_back(none);
                }
                if (std::exchange(lastKernels[number], kernelNumber) != kernelNumber) {
                    numbers.push_back(number);
                }
            }
        }
        ends.push_back(numbers.size());
    }
    listKernels(numbers, ends);
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
    slots_[place] = {upperHalf(hash), number};
    if (2 * names_.size() > slots_.size()) {
        grow();
    }
    return number;
}

std::size_t HardwareNames::placeOf(std::string_view name, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = static_cast<std::size_t>(hash) & mask;
    for (; slots_[place].number != none; place = (place + 1) & mask) {
        if (slots_[place].hash == upperHalf(hash) && names_[slots_[place].number] == name) {
            break;
        }
    }
    return place;
}

void HardwareNames::grow() {
    slots_.assign(2 * slots_.size(), Slot());
    for (std::uint32_t number = 0; number < names_.size(); ++number) {
        const std::uint64_t hash = keyHash(names_[number]);
        slots_[placeOf(names_[number], hash)] = {upperHalf(hash), number};
    }
}

void HardwareNames::listKernels(std::span<const std::uint32_t> numbers,
                                std::span<const std::size_t> ends) {
    // Counted first, then put in place: each name's kernels keep the order in which they came.
    starts_.assign(names_.size() + 1, 0);
    for (const std::uint32_t number : numbers) {
        ++starts_[number + 1];
    }
    for (std::size_t number = 0; number < names_.size(); ++number) {
        starts_[number + 1] += starts_[number];
    }
    kernels_.resize(numbers.size());
    std::vector<std::uint32_t> next = starts_;
    std::size_t position = 0;
    for (std::uint32_t kernel = 0; kernel < ends.size(); ++kernel) {
        for (; position < ends[kernel]; ++position) {
            kernels_[next[numbers[position]]++] = kernel;
        }
    }
}

} // namespace consolidator
