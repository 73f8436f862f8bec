#include "inspect/FirstPaths.h"

#include <algorithm>

namespace consolidator::inspect {

FirstPaths::FirstPaths(const std::vector<const Kernel*>& kernels,
                       const std::vector<std::string_view>& paths)
    : finder_(paths), found_(paths.size(), Found::Nowhere) {
    for (const Kernel* const kernel : kernels) {
        numbers_.try_emplace(kernel, numbersOf(*kernel, paths));
    }
}

std::vector<std::string_view> FirstPaths::pathsOf(const std::vector<const Kernel*>& kernels,
                                                  std::size_t longestNet) {
    std::vector<std::string_view> result;
    for (const Kernel* const kernel : kernels) {
        const std::vector<std::string>& paths = kernel->instancePaths();
        for (std::size_t i = 0; i < std::min(most, paths.size()); ++i) {
            if (paths[i].size() <= longestNet + 1) {
                result.emplace_back(paths[i]);
            }
        }
    }
    std::ranges::sort(result);
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

FirstPaths::Numbers FirstPaths::numbersOf(const Kernel& kernel,
                                          const std::vector<std::string_view>& paths) {
    Numbers numbers{};
    numbers.fill(none);
    const std::vector<std::string>& own = kernel.instancePaths();
    for (std::size_t i = 0; i < std::min(most, own.size()); ++i) {
        const auto path = std::ranges::lower_bound(paths, std::string_view(own[i]));
        if (path != paths.end() && *path == own[i]) {
            numbers.at(i) = static_cast<std::uint32_t>(path - paths.begin());
        }
    }
    return numbers;
}

void FirstPaths::setNet(std::string_view net) {
    net_ = net;
    searched_ = Found::Nowhere;
    for (const std::uint32_t path : all_) {
        found_[path] = Found::Nowhere;
    }
    all_.clear();
}

bool FirstPaths::has(const Kernel& kernel, Found form) {
    if (searched_ == Found::Nowhere) {
        search(net_, Found::AsItIs);
    }
    if (form == Found::WithSlashes && searched_ == Found::AsItIs) {
        std::string net = net_;
        std::ranges::replace_if(
            net, [](char c) { return c == '.' || c == '\\'; }, '/');
        search(net, Found::WithSlashes);
    }
    return std::ranges::any_of(numbers_.at(&kernel), [this, form](std::uint32_t path) {
        return path != none && found_[path] >= form;
    });
}

void FirstPaths::search(std::string_view net, Found form) {
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
