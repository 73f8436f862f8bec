// Which input has told what about which kernel.
#pragma once

#include "model/Kernel.h"
#include "shared/TextHash.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// A description that came after another one of the same name, which counts.
struct IgnoredDescription {
    bool isArgument; ///< Else a local variable.
    std::string sourceName;
    std::string hardwareName; ///< As it is told now,
    std::string typeText;
    std::string firstHardwareName; ///< and as it was told first,
    std::string firstTypeText;
    std::uint32_t firstInput; ///< by this input.
};

/// A type that came after another one, which counts.
struct IgnoredType {
    KernelType type;
    KernelType firstType;
    std::uint32_t firstInput;
};

/// Remembers the inputs of each kernel, and of its arguments, variables and type. Inputs are
/// numbers of the caller's, added in ascending order.
class KernelOrigins {
public:
    /// What the project knew better when a kernel came.
    struct Ignored {
        std::vector<IgnoredDescription> descriptions;
        std::vector<IgnoredType> types; ///< None or one.
    };

    /// Notes what the input `input` tells of a kernel.
    Ignored add(std::uint32_t input, const Kernel& kernel);

    /// The inputs that a kernel of this name came from, each once; none if there is none.
    const std::vector<std::uint32_t>& inputsOf(std::string_view kernel) const;

private:
    struct Description {
        std::string hardwareName;
        std::string typeText;
        std::uint32_t input;
    };
    using Descriptions = std::unordered_map<std::string, Description, TextHash>;

    struct Origin {
        std::vector<std::uint32_t> inputs;
        KernelType type = KernelType::Unknown;
        std::uint32_t typeInput = 0;
        /// Arguments that were told first, all by one input, where kernels of it share them: a
        /// thousand kernels may have millions.
        ArgumentList sharedArguments;
        std::uint32_t sharedInput = 0;
        Descriptions arguments; ///< All others, by source name.
        Descriptions variables;
    };

    /// Takes over the arguments without a copy, if that is possible.
    static bool share(std::uint32_t input, const ArgumentList& arguments, Origin& origin);
    static void addDescriptions(std::uint32_t input, bool areArguments,
                                std::span<const Variable> variables, Origin& origin,
                                Ignored& ignored);

    std::unordered_map<std::string, Origin, TextHash> origins_; ///< By kernel name.
};

} // namespace consolidator::inspect
