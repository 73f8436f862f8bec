// Logic locations that arrive in pieces, as from a slow pipe: wherever a piece ends, inside a line
// or a word, the reader does what it does with the text at once.

#include "readers/LLFile.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/OddLogicLocations.h"
#include "tests/support/PlainLogicLocations.h"
#include "tests/support/Trickle.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <random>
#include <sstream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// All that a reading leaves behind.
struct Left {
    bool succeeded = false;
    std::vector<std::string> kernels = {}; ///< Their binary forms.
    std::optional<Finding> stopped = {};
    std::vector<Finding> remarks = {};
    std::uint64_t remarkCount = 0;

    bool operator==(const Left&) const = default;
};

void PrintTo(const Left& left, std::ostream* out) {
    *out << (left.succeeded ? "succeeded" : "failed");
    if (left.stopped) {
        *out << " in line " << left.stopped->line << ": " << left.stopped->text;
    }
    *out << ", " << left.remarkCount << " remarks, " << testing::PrintToString(left.kernels);
}

std::vector<std::string> formsOf(const std::vector<Kernel>& kernels) {
    std::vector<std::string> forms;
    forms.reserve(kernels.size());
    for (const Kernel& kernel : kernels) {
        forms.push_back(binaryForm(kernel));
    }
    return forms;
}

Left leftBy(std::unique_ptr<std::streambuf> source, const std::vector<Kernel>& kernels) {
    std::ostringstream errors;
    LLFile reader(std::move(source), errors);
    reader.setKernels(kernels);
    Left left;
    left.succeeded = reader.parse();
    left.kernels = formsOf(reader.kernels());
    left.stopped = reader.diagnostic().stopped();
    left.remarks = reader.diagnostic().remarks();
    left.remarkCount = reader.diagnostic().remarkCount();
    EXPECT_EQ(errors.str(), "");
    return left;
}

TEST(LogicLocationPieces, MakeTheSameAsTheTextAtOnce) {
    constexpr std::uint32_t texts = 3000;
    OddLogicLocations odd(22);
    std::size_t succeeded = 0;
    std::size_t changed = 0;
    for (std::uint32_t i = 0; i < texts && !testing::Test::HasFailure(); ++i) {
        const std::vector<Kernel> kernels = odd.kernels();
        const std::string text = odd.text();
        SCOPED_TRACE("text " + std::to_string(i) + ": " + testing::PrintToString(text));
        const Left whole = leftBy(std::make_unique<std::stringbuf>(text), kernels);
        for (const std::size_t most : {1U, 100U}) {
            EXPECT_EQ(leftBy(std::make_unique<Trickle>(text, most, i), kernels), whole)
                << "up to " << most << " bytes at a time";
        }
        std::vector<Kernel> plain = kernels;
        EXPECT_EQ(readPlainLogicLocations(text, plain), whole.succeeded);
        EXPECT_EQ(formsOf(plain), whole.kernels);
        succeeded += whole.succeeded ? 1 : 0;
        changed += whole.kernels != formsOf(kernels) ? 1 : 0;
    }
    // The texts would show nothing if nearly all of them went the same way.
    EXPECT_GT(succeeded, texts / 4);
    EXPECT_LT(succeeded, texts - texts / 20);
    EXPECT_GT(changed, texts / 5);
}

/// Thousands of lines, mostly as tools write them, few with a net, about bits that come again with
/// other locations: enough to fill the pieces, the block of the stream and what waits in between.
std::string longText(std::mt19937& random) {
    const std::vector<std::string> odd{"; a comment",
                                       "",
                                       "  Bit 1 0x2 3 T 0",
                                       "Bit 7 0x8 9 T 0 Net=top/k_1/a[1x]",
                                       "Revision 3",
                                       "Bit 1 0x2 3 T 0 Net=top/k_1/a tail",
                                       "; Net=top/k_1/a[0]",
                                       std::string("Bit \0 Net=k_1/a", 15),
                                       "Bit x 0x2 3 T 0 Net=top/k_1/a[0]"};
    const std::vector<std::string> nets{"top/k_1/a", "top/k_10/b", "top/k_2/b", "top/x/a",
                                        "top/k_1/a_longer_name_of_no_kernel"};
    const std::size_t lines = 200 + random() % 8000;
    const std::size_t oddEvery = 2 + random() % 400;
    std::string text = "Revision 3\n";
    for (std::size_t line = 0; line < lines; ++line) {
        const std::string number = std::to_string(random() % 100000);
        if (random() % oddEvery == 0) {
            text += odd[random() % odd.size()];
        } else if (random() % 5 == 0) {
            text += "Bit " + number + " 0x00" + number + ' ' + number +
                    " DIE0 0 Latch=AQ Net=" + nets[random() % nets.size()] + '[' +
                    std::to_string(random() % 40) + ']';
        } else {
            text += "Bit " + number + " 0x00333f53 2256 DIE0 0 Block=MEMORY_X" + number;
        }
        text += random() % 50 == 0 ? "\r\n" : "\n";
    }
    return text;
}

TEST(LogicLocationPieces, OfLongTextsMakeWhatThePlainReaderMakes) {
    std::vector<Kernel> kernels(3);
    kernels[0].addInstancePath("top/k_1");
    kernels[0].addArgument("a", "a", "int");
    kernels[1].addInstancePath("top/k_1");
    kernels[1].addInstancePath("top/k_2");
    kernels[1].addVariable("b", "b", "int");
    std::mt19937 random(33);
    for (std::uint32_t i = 0; i < 40 && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE("text " + std::to_string(i));
        const std::string text = longText(random);
        std::vector<Kernel> plain = kernels;
        EXPECT_TRUE(readPlainLogicLocations(text, plain));
        const Left whole = leftBy(std::make_unique<std::stringbuf>(text), kernels);
        EXPECT_TRUE(whole.succeeded);
        EXPECT_EQ(whole.kernels, formsOf(plain));
        EXPECT_NE(whole.kernels, formsOf(kernels));
        EXPECT_EQ(leftBy(std::make_unique<Trickle>(text, 5000, i), kernels), whole);
    }
}

} // namespace

} // namespace consolidator::test
