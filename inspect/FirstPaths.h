// Whether a net lies in one of the first instances of a kernel, asked for many kernels.
#pragma once

#include "model/Kernel.h"
#include "model/PathFinder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// Of each kernel, the first instance paths. A net is searched once for all of them, and only when
/// the first question comes.
class FirstPaths {
public:
    /// Nets have at most `longestNet` bytes. The kernels must outlive this object and stay where
    /// and as they are.
    FirstPaths(const std::vector<const Kernel*>& kernels, std::size_t longestNet)
        : FirstPaths(kernels, pathsOf(kernels, longestNet)) {}

    /// The net that is asked about, with its leading "/".
    void setNet(std::string_view net);

    /// Whether one of the first paths of the kernel, which the constructor got, occurs in the net.
    bool isIn(const Kernel& kernel) { return has(kernel, Found::AsItIs); }

    /// The same, also if each "." and "\" of the net counts as "/".
    bool isNearlyIn(const Kernel& kernel) { return has(kernel, Found::WithSlashes); }

private:
    static constexpr std::size_t most = 4;
    static constexpr auto none = static_cast<std::uint32_t>(-1);
    using Numbers = std::array<std::uint32_t, most>;

    /// In which form of the net a path was found, the one that says most last.
    enum class Found : std::uint8_t { Nowhere, WithSlashes, AsItIs };

    FirstPaths(const std::vector<const Kernel*>& kernels,
               const std::vector<std::string_view>& paths);

    static std::vector<std::string_view> pathsOf(const std::vector<const Kernel*>& kernels,
                                                 std::size_t longestNet);
    static Numbers numbersOf(const Kernel& kernel, const std::vector<std::string_view>& paths);

    bool has(const Kernel& kernel, Found form);
    void search(std::string_view net, Found form);

    PathFinder finder_;
    std::unordered_map<const Kernel*, Numbers> numbers_; ///< Of the paths.
    std::string net_;
    Found searched_ = Found::Nowhere; ///< The forms from the last one down to this are searched.
    std::vector<Found> found_;        ///< Per path.
    std::vector<std::uint32_t> all_;  ///< That were found.
};

} // namespace consolidator::inspect
