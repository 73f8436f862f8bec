// Small logic-location texts full of odd things, with kernels for them, for two readers to be
// compared on.
#pragma once

#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace consolidator::test {

/// The same seed gives the same texts and kernels everywhere.
class OddLogicLocations {
public:
    explicit OddLogicLocations(std::uint32_t seed) : engine_(seed) {}

    /// A few kernels whose instance paths and hardware names occur in the texts. Some of them have
    /// registers already.
    std::vector<Kernel> kernels();

    std::string text();

private:
    using Choices = std::vector<std::string>;

    std::size_t below(std::size_t limit);
    bool onceIn(std::size_t times);
    std::string anyOf(const Choices& choices);
    std::string mostlyFirst(const Choices& choices, std::size_t onceIn);

    Kernel kernel(const std::string& name);
    std::string net();
    std::string further();
    std::string bitLine();
    std::string longLine();
    std::string line();
    void damage(std::string& text);

    std::mt19937 engine_;
};

} // namespace consolidator::test
