#include "readers/NetMatcher.h"

#include <algorithm>
#include <iterator>

namespace consolidator {

namespace {

/// Lists of up to this length are looked up one by one in the other list, which is about as quick
/// as finding a remembered intersection.
constexpr std::size_t shortList = 16;

/// What a remembered intersection takes beside its kernels, counted in kernels.
constexpr std::size_t intersectionOverhead = 32;

/// As many kernels may be remembered as the kernels have paths and names, and so many more.
constexpr std::size_t leastMemory = 65536;

void intersect(std::span<const std::uint32_t> few, std::span<const std::uint32_t> many,
               std::vector<std::uint32_t>& result) {
    result.clear();
    std::ranges::copy_if(few, std::back_inserter(result), [many](std::uint32_t kernel) {
        return std::ranges::binary_search(many, kernel);
    });
}

} // namespace

NetMatcher::NetMatcher(const std::vector<Kernel>& kernels, std::size_t longestNet)
    : paths_(KernelIndex::ofInstancePaths(kernels, longestNet)),
      names_(kernels),
      finder_(paths_.texts()),
      isOwner_(kernels.size()) {}

std::span<const std::uint32_t> NetMatcher::owners(std::string_view net, std::size_t most) {
    owners_.clear();
    const std::uint32_t name = names_.numberOf(net.substr(net.rfind('/') + 1));
    if (name == HardwareNames::none) {
        return {};
    }
    isOwner_.clear();
    const std::size_t candidates = names_.kernelsOf(name).size();
    finder_.forEachIn(net, [&](std::uint32_t path) {
        const Kernels found = havingBoth(path, name);
        // The first kernels of all are among the first of each path.
        for (const std::uint32_t kernel : found.first(std::min(most, found.size()))) {
            if (isOwner_.set(kernel)) {
                owners_.push_back(kernel);
            }
        }
        // Whatever else occurs in the net, no other kernel has the name.
        return owners_.size() < candidates;
    });
    std::ranges::sort(owners_);
    return Kernels(owners_).first(std::min(most, owners_.size()));
}

NetMatcher::Kernels NetMatcher::havingBoth(std::uint32_t path, std::uint32_t name) {
    Kernels few = paths_.kernelsOf(path);
    Kernels many = names_.kernelsOf(name);
    if (few.size() > many.size()) {
        std::swap(few, many);
    }
    if (few.size() <= shortList) {
        intersect(few, many, few_);
        return few_;
    }
    const auto known = havingBoth_.find({path, name});
    if (known != havingBoth_.end()) {
        return known->second;
    }
    std::vector<std::uint32_t> both;
    intersect(few, many, both);
    return remember({path, name}, std::move(both));
}

NetMatcher::Kernels NetMatcher::remember(std::pair<std::uint32_t, std::uint32_t> pair,
                                         std::vector<std::uint32_t> both) {
    const std::size_t size = both.size() + intersectionOverhead;
    if (remembered_ + size > leastMemory + paths_.entryCount() + names_.entryCount()) {
        havingBoth_.clear();
        remembered_ = 0;
    }
    remembered_ += size;
    return havingBoth_.emplace(pair, std::move(both)).first->second;
}

} // namespace consolidator
