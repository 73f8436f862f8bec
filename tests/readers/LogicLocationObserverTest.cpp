// What the reader of logic locations tells those who look on, and that it does nothing else for it.
#include "readers/LogicLocationObserver.h"

#include "readers/LLFile.h"
#include "tests/support/OddLogicLocations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace consolidator::test {
namespace {

using testing::ElementsAre;
using testing::Pair;

/// Writes down what it is told: "7 net[3] at 1,2", with "after 1,3" where the bit was before.
struct Listener final : LogicLocationObserver {
    std::vector<std::pair<std::uint64_t, std::string>> nets;
    std::vector<std::string> placements;

    /// By net and bit, where the lines so far have placed it.
    std::map<std::pair<std::string, std::uint32_t>, LogicLocation> places;
    bool knowsBefore = true; ///< Each line was told with where the bit was placed before.

    void netNamed(std::string_view net, std::uint64_t line) override {
        nets.emplace_back(line, net);
    }

    void bitPlaced(const Placement& placement) override {
        const auto [place, isNew] =
            places.try_emplace({std::string(placement.net), placement.bitIndex});
        knowsBefore = knowsBefore &&
                      placement.before == (isNew ? std::nullopt : std::optional(place->second));
        place->second = placement.location;
        std::ostringstream text;
        text << placement.line << ' ' << placement.net << '[' << placement.bitIndex << "] at "
             << placement.location.address << ',' << placement.location.offset;
        if (placement.before) {
            text << " after " << placement.before->address << ',' << placement.before->offset;
        }
        placements.push_back(text.str());
    }
};

/// The kernels after the reading.
std::vector<Kernel> read(const std::string& text, const std::vector<Kernel>& kernels,
                         LogicLocationObserver* observer) {
    std::ostream nowhere(nullptr);
    LLFile reader(std::make_unique<std::stringbuf>(text), nowhere);
    reader.setKernels(kernels);
    if (observer != nullptr) {
        reader.observe(*observer);
    }
    reader.parse();
    return reader.takeKernels();
}

Kernel kernelAt(const std::string& path) {
    Kernel kernel;
    kernel.setName(path);
    kernel.addInstancePath(path);
    kernel.addVariable("v", "v_reg", "int");
    return kernel;
}

TEST(LogicLocationObserver, IsToldOfNetsInTheOrderOfTheirLines) {
    Listener listener;
    read("Revision 3 Net=header\n"
         "Bit 1 0x1 7 DIE0 0 Net=top/k_1/v_reg[0]\n"
         "Bit 1 0x1 7 DIE0 0 Net=top/other[0]\n"
         "; Net=comment\n"
         "  ; Net=comment\n"
         "Bit 1 0x1 7 DIE0 0 Ram=B\n"
         "  Bit 1 0x1 8 DIE0 0 Net=top/x Net=top/k_1/v_reg\n"
         "Bit 1 0x1 9 DIE0 0 Net=else/v_reg[1] Latch=Q\n"
         "Bit x Net=top/k_1/v_reg[2]\n"
         "Bit 1 0x1 9 DIE0 0 Net=\n",
         {kernelAt("top/k_1")}, &listener);
    EXPECT_THAT(listener.nets, ElementsAre(Pair(2, "top/k_1/v_reg"), Pair(3, "top/other"),
                                           Pair(7, "top/k_1/v_reg"), Pair(8, "else/v_reg"),
                                           Pair(9, "top/k_1/v_reg")));
    EXPECT_THAT(listener.placements,
                ElementsAre("2 top/k_1/v_reg[0] at 1,7", "7 top/k_1/v_reg[0] at 1,8 after 1,7"));
}

TEST(LogicLocationObserver, IsToldOnceOfANetOfSeveralKernels) {
    Listener listener;
    read("Bit 1 0x1 7 DIE0 0 Net=top/k_1/v_reg[0]\n"
         "Bit 1 0x1 8 DIE0 0 Net=top/k_1/v_reg[0]\n",
         {kernelAt("top/k_1"), kernelAt("k_1")}, &listener);
    EXPECT_THAT(listener.placements,
                ElementsAre("1 top/k_1/v_reg[0] at 1,7", "2 top/k_1/v_reg[0] at 1,8 after 1,7"));
}

TEST(LogicLocationObserver, IsNotToldOfWhatRegistersHadBefore) {
    Kernel kernel = kernelAt("top/k_1");
    kernel.addHardwareLocation("/top/k_1/v_reg", 0, 1, 7);
    Listener listener;
    read("Bit 1 0x1 8 DIE0 0 Net=top/k_1/v_reg[0]\n"
         "Bit 1 0x1 8 DIE0 0 Net=top/k_1/v_reg[16777216]\n",
         {kernel}, &listener);
    EXPECT_THAT(listener.placements, ElementsAre("1 top/k_1/v_reg[0] at 1,8"));
}

TEST(LogicLocationObserver, ChangesNothingAndKnowsWhereEachBitWasBefore) {
    for (std::uint32_t seed = 0; seed < 2000; ++seed) {
        OddLogicLocations odd(seed);
        const std::vector<Kernel> kernels = odd.kernels();
        const std::string text = odd.text();
        Listener listener;
        const std::vector<Kernel> watched = read(text, kernels, &listener);
        const std::vector<Kernel> unwatched = read(text, kernels, nullptr);
        ASSERT_EQ(watched.size(), unwatched.size());
        for (std::size_t i = 0; i < watched.size(); ++i) {
            ASSERT_EQ(watched[i].hardwareVariables(), unwatched[i].hardwareVariables()) << seed;
        }
        ASSERT_TRUE(listener.knowsBefore) << "seed " << seed;
        std::uint64_t last = 0;
        for (const auto& [line, net] : listener.nets) {
            ASSERT_GT(line, last) << "seed " << seed;
            last = line;
        }
        ASSERT_LE(listener.placements.size(), listener.nets.size()) << "seed " << seed;
    }
}

} // namespace
} // namespace consolidator::test
