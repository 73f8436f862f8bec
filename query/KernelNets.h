// Which registers of a kernel hold which argument or variable, and in which instance.
#pragma once

#include "model/Kernel.h"
#include "shared/TextHash.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator {

/// The last component of a net: the text behind its last "/".
std::string_view lastComponent(std::string_view net);

/// An index over the registers of one kernel, which must outlive it and stay as it is.
///
/// A register holds the arguments and variables whose hardware name is its net's last component.
/// InstanceFinder tells which instance it belongs to.
class KernelNets {
public:
    explicit KernelNets(const Kernel& kernel);

    const Kernel& kernel() const { return *kernel_; }

    /// The positions in hardwareVariables(), ascending, of the registers with this last component.
    std::span<const std::uint32_t> registersOf(std::string_view hardwareName) const;

    /// The position in instancePaths() of the instance that the register at `position` lies in.
    /// Nothing if no path occurs in its net, which no run of the consolidator leaves behind.
    std::optional<std::uint32_t> instanceOf(std::size_t position) const {
        return instances_.at(position);
    }

    /// The same in words: "instance 0", or "no instance".
    std::string instanceText(std::size_t position) const {
        const std::optional<std::uint32_t> instance = instanceOf(position);
        return instance ? "instance " + std::to_string(*instance) : "no instance";
    }

private:
    void findInstances();

    const Kernel* kernel_;
    std::unordered_map<std::string_view, std::vector<std::uint32_t>, TextHash> byName_;
    std::vector<std::optional<std::uint32_t>> instances_; ///< Per register.
};

} // namespace consolidator
