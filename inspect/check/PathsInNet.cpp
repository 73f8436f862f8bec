#include "inspect/check/PathsInNet.h"

#include <algorithm>
#include <utility>

namespace consolidator::inspect {

PathsInNet::PathsInNet(const std::vector<const Kernel*>& kernels, const PathOwners& paths)
    : finder_(paths.paths()), found_(paths.paths().size(), Found::Nowhere) {
    for (const Kernel* const kernel : kernels) {
        numbers_.try_emplace(kernel);
    }
    for (std::uint32_t path = 0; path < paths.paths().size(); ++path) {
        for (const std::uint32_t kernel : paths.ownersOf(path)) {
            numbers_.at(kernels[kernel]).push_back(path);
        }
    }
}

PathOwners PathsInNet::pathsOf(const std::vector<const Kernel*>& kernels, std::size_t longestNet) {
    std::vector<PathOwners::Entry> entries;
    for (std::uint32_t kernel = 0; kernel < kernels.size(); ++kernel) {
        for (const std::string& path : kernels[kernel]->instancePaths()) {
            if (path.size() <= longestNet + 1) { // which has a "/" in front
                entries.emplace_back(path, kernel);
            }
        }
    }
    return PathOwners(std::move(entries));
}

void PathsInNet::setNet(std::string_view net) {
    net_ = net;
    searched_ = Found::Nowhere;
    for (const std::uint32_t path : all_) {
        found_[path] = Found::Nowhere;
    }
    all_.clear();
}

bool PathsInNet::has(const Kernel& kernel, Found form) {
    if (searched_ == Found::Nowhere) {
        search(net_, Found::AsItIs);
    }
    if (form == Found::WithSlashes && searched_ == Found::AsItIs) {
        std::string net = net_;
        const auto isSeparator = [](char c) { return c == '.' || c == '\\'; };
        std::ranges::replace_if(net, isSeparator, '/');
        search(net, Found::WithSlashes);
    }
    const Numbers& numbers = numbers_.at(&kernel);
    if (numbers.size() < all_.size()) {
        return std::ranges::any_of(numbers,
                                   [&](std::uint32_t path) { return found_[path] >= form; });
    }
    // A net has few of the paths, and a kernel may have thousands.
    return std::ranges::any_of(all_, [&](std::uint32_t path) {
        return found_[path] >= form && std::ranges::binary_search(numbers, path);
    });
}

void PathsInNet::search(std::string_view net, Found form) {
    searched_ = form;
    finder_.forEachIn(net, [this, form](std::uint32_t path) {
        if (found_[path] == Found::Nowhere) {
            found_[path] = form;
            all_.push_back(path);
        }
        return true;
    });
}

} // namespace consolidator::inspect
