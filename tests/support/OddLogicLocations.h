// Small logic-location texts full of odd things, with kernels for them, for two readers to be
// compared on.
#pragma once

#include "model/Kernel.h"
#include "tests/support/RandomSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// The same seed gives the same texts and kernels everywhere.
class OddLogicLocations {
public:
    explicit OddLogicLocations(std::uint32_t seed) : random_(seed) {}

    /// A few kernels whose instance paths and hardware names occur in the texts. Some of them have
    /// registers already.
    std::vector<Kernel> kernels();

    std::string text();

private:
    using Choices = std::vector<std::string_view>;

    Kernel kernel(const std::string& name);
    std::string net();
    std::string further();
    std::string bitLine();
    std::string longLine();
    std::string line();
    void damage(std::string& text);

    RandomSource random_;
};

} // namespace consolidator::test
