#include "readers/HardwareNames.h"

#include "shared/KeyedHash.h"

#include <utility>

namespace consolidator {

HardwareNames::HardwareNames(const std::vector<Kernel>& kernels)
    : filter_((std::size_t{1} << filterBits) / 64) {
    std::vector<std::uint32_t> numbers;     // of all kernels' names, one kernel after the other
    std::vector<std::size_t> ends;          // of each kernel's numbers
    std::vector<std::uint32_t> lastKernels; // of each name, which spares most repeated numbers
    for (const Kernel& kernel : kernels) {
        const auto kernelNumber = static_cast<std::uint32_t>(ends.size());
        for (const std::span variables : {kernel.arguments(), std::span(kernel.variables())}) {
            for (const Variable& variable : variables) {
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
    return numbers_.find(keyHash(name), is(name));
}

std::uint32_t HardwareNames::numberOrAdd(std::string_view name) {
    return numbers_
        .findOrAdd(keyHash(name), is(name),
                   [this, name] {
                       names_.push_back(name);
                       const std::uint64_t bit = filterBit(name);
                       filter_[bit / 64] |= std::uint64_t{1} << (bit % 64);
                       return static_cast<std::uint32_t>(names_.size() - 1);
                   })
        .first;
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
