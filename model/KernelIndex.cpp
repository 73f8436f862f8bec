#include "model/KernelIndex.h"

#include <algorithm>
#include <string>

namespace consolidator {

KernelIndex KernelIndex::ofInstancePaths(const std::vector<Kernel>& kernels, std::size_t longest) {
    std::vector<Entry> entries;
    for (std::uint32_t i = 0; i < kernels.size(); ++i) {
        for (const std::string& path : kernels[i].instancePaths()) {
            if (path.size() <= longest) {
                entries.emplace_back(path, i);
            }
        }
    }
    return KernelIndex(std::move(entries));
}

KernelIndex::KernelIndex(std::vector<Entry> entries) {
    std::ranges::sort(entries);
    entries.erase(std::unique(entries.begin(), entries.end()), entries.end());
    kernels_.reserve(entries.size());
    for (const auto& [text, kernel] : entries) {
        if (texts_.empty() || texts_.back() != text) {
            texts_.push_back(text);
            ends_.push_back(kernels_.size());
        }
        kernels_.push_back(kernel);
        ++ends_.back();
    }
}

std::span<const std::uint32_t> KernelIndex::kernelsOf(std::uint32_t number) const {
    const std::size_t first = number == 0 ? 0 : ends_[number - 1];
    return std::span(kernels_).subspan(first, ends_[number] - first);
}

} // namespace consolidator
