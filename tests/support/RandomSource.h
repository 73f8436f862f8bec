// Choices by chance that are the same everywhere for the same seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

class RandomSource {
public:
    explicit RandomSource(std::uint32_t seed) : engine_(seed) {}

    /// A number below the limit, which is not 0. (A distribution of the standard library would not
    /// give the same numbers everywhere.)
    std::size_t below(std::size_t limit) { return engine_() % limit; }

    /// Any 32-bit number; small and extreme ones are as likely as all others together.
    std::uint32_t number() {
        switch (below(4)) {
        case 0:
            return static_cast<std::uint32_t>(engine_());
        case 1:
            return ~static_cast<std::uint32_t>(below(3));
        default:
            return static_cast<std::uint32_t>(below(1000));
        }
    }

    bool onceIn(std::size_t times) { return below(times) == 0; }

    std::string anyOf(const std::vector<std::string_view>& choices) {
        return std::string(choices[below(choices.size())]);
    }

    /// Mostly the first choice; once in so many times any of them.
    std::string mostlyFirst(const std::vector<std::string_view>& choices, std::size_t times) {
        return onceIn(times) ? anyOf(choices) : std::string(choices.front());
    }

    /// Up to `most` elements, each one what make() returns.
    template <typename Make>
    auto upTo(std::size_t most, Make make) {
        std::vector<decltype(make())> result;
        for (std::size_t count = below(most + 1); count > 0; --count) {
            result.push_back(make());
        }
        return result;
    }

private:
    std::mt19937 engine_;
};

} // namespace consolidator::test
