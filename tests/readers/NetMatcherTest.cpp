// Which kernels own a net: by hand, and against looking at each kernel.

#include "readers/NetMatcher.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Names = std::vector<std::string>;
using Numbers = std::vector<std::uint32_t>;

constexpr std::size_t longestNet = 2046;

Kernel kernelAt(const Names& paths, const Names& arguments, const Names& variables = {}) {
    Kernel kernel;
    for (const std::string& path : paths) {
        kernel.addInstancePath(path);
    }
    for (const std::string& name : arguments) {
        const std::string number = std::to_string(kernel.arguments().size());
        kernel.addArgument("argument " + number, name, "int");
    }
    for (const std::string& name : variables) {
        const std::string number = std::to_string(kernel.variables().size());
        kernel.addVariable("variable " + number, name, "int");
    }
    return kernel;
}

Numbers numbersOf(std::span<const std::uint32_t> kernels) {
    return {kernels.begin(), kernels.end()};
}

Numbers ownersOf(std::string_view net, const std::vector<Kernel>& kernels) {
    NetMatcher matcher(kernels, longestNet);
    return numbersOf(matcher.owners(net));
}

bool plainlyOwns(const Kernel& kernel, const std::string& net) {
    const std::string component = net.substr(net.rfind('/') + 1);
    const auto isNamedSo = [&](const Variable& v) { return v.hardwareName == component; };
    return (std::ranges::any_of(kernel.arguments(), isNamedSo) ||
            std::ranges::any_of(kernel.variables(), isNamedSo)) &&
           std::ranges::any_of(kernel.instancePaths(), [&](const std::string& path) {
               return net.find(path) != std::string::npos;
           });
}

Numbers plainOwnersOf(const std::string& net, const std::vector<Kernel>& kernels) {
    Numbers result;
    for (std::uint32_t i = 0; i < kernels.size(); ++i) {
        if (plainlyOwns(kernels[i], net)) {
            result.push_back(i);
        }
    }
    return result;
}

TEST(NetMatcher, NeedsAPathAndAName) {
    const std::vector<Kernel> kernels = {kernelAt({"top/k_1"}, {"a"}), kernelAt({"top/k_2"}, {"a"}),
                                         kernelAt({"top/k_1"}, {"b"}, {"a_r"}), kernelAt({}, {"a"}),
                                         kernelAt({"top/k_1"}, {})};
    EXPECT_THAT(ownersOf("/top/k_1/a", kernels), ElementsAre(0));
    EXPECT_THAT(ownersOf("/top/k_10/inst/a", kernels), ElementsAre(0));
    EXPECT_THAT(ownersOf("/top/k_2/a", kernels), ElementsAre(1));
    EXPECT_THAT(ownersOf("/top/k_1/a_r", kernels), ElementsAre(2));
    EXPECT_THAT(ownersOf("/top/k_2/b", kernels), IsEmpty());
    EXPECT_THAT(ownersOf("/top/k_1/aa", kernels), IsEmpty());
    EXPECT_THAT(ownersOf("/top/k_1/", kernels), IsEmpty());
    EXPECT_THAT(ownersOf("/top/k_1", kernels), IsEmpty());
    EXPECT_THAT(ownersOf("/a", kernels), IsEmpty());
}

TEST(NetMatcher, GivesEachOwnerOnceInTheOrderOfTheList) {
    const std::vector<Kernel> kernels = {kernelAt({"k_1", "top", "p/k"}, {"a", "a"}, {"a", "b"}),
                                         kernelAt({"x"}, {"a"}), kernelAt({"op"}, {"b"}, {"a"}),
                                         kernelAt({"k_1/a"}, {"a"}), kernelAt({"t"}, {"a"})};
    EXPECT_THAT(ownersOf("/top/k_1/a", kernels), ElementsAre(0, 2, 3, 4));
    EXPECT_THAT(ownersOf("/top/k_1/b", kernels), ElementsAre(0, 2));
}

TEST(NetMatcher, TakesEmptyPathsAndNamesAndPathsOfSlashes) {
    const std::vector<Kernel> kernels = {kernelAt({""}, {"a", ""}), kernelAt({"/"}, {"a"}, {""}),
                                         kernelAt({"//"}, {"", "a"})};
    EXPECT_THAT(ownersOf("/a", kernels), ElementsAre(0, 1));
    EXPECT_THAT(ownersOf("//a", kernels), ElementsAre(0, 1, 2));
    EXPECT_THAT(ownersOf("/", kernels), ElementsAre(0, 1));
    EXPECT_THAT(ownersOf("/top/", kernels), ElementsAre(0, 1));
    EXPECT_THAT(ownersOf("/top//", kernels), ElementsAre(0, 1, 2));
}

TEST(NetMatcher, FindsNothingForNoKernels) {
    EXPECT_THAT(ownersOf("/top/a", {}), IsEmpty());
}

TEST(NetMatcher, FindsPathsAsLongAsANet) {
    const std::string net = "/" + std::string(longestNet - 3, 'x') + "/a";
    ASSERT_EQ(net.size(), longestNet);
    EXPECT_THAT(ownersOf(net, {kernelAt({net}, {"a"}), kernelAt({net + "x"}, {"a"})}),
                ElementsAre(0));
}

TEST(NetMatcher, StaysValidWhileRegistersAreAdded) {
    std::vector<Kernel> kernels = {kernelAt({"top"}, {"a"}), kernelAt({"top"}, {"b"}, {"a"})};
    NetMatcher matcher(kernels, longestNet);
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const std::string net = "/top/" + std::to_string(i) + "/a";
        const Numbers owners = numbersOf(matcher.owners(net));
        ASSERT_THAT(owners, ElementsAre(0, 1));
        for (const std::uint32_t owner : owners) {
            kernels[owner].addHardwareLocation(net, i % 3, i, i);
        }
    }
}

TEST(NetMatcher, GivesTheFirstOwnersWhenItIsAskedForFew) {
    std::vector<Kernel> kernels;
    for (int i = 0; i < 50; ++i) {
        kernels.push_back(kernelAt({i % 2 == 0 ? "top" : "k_1", "inst"}, {"a"}));
    }
    NetMatcher matcher(kernels, longestNet);
    EXPECT_THAT(numbersOf(matcher.owners("/top/k_1/inst/a", 1)), ElementsAre(0));
    EXPECT_THAT(numbersOf(matcher.owners("/top/k_1/a", 3)), ElementsAre(0, 1, 2));
    EXPECT_THAT(numbersOf(matcher.owners("/k_1/a", 3)), ElementsAre(1, 3, 5));
    EXPECT_THAT(numbersOf(matcher.owners("/k_1/top/a", 2)), ElementsAre(0, 1));
    EXPECT_EQ(matcher.owners("/k_1/top/a").size(), 50);
}

TEST(NetMatcher, KeepsItsAnswersWhenItForgetsIntersections) {
    // 60 paths and 60 names of which most kernels have most: more pairs than are remembered.
    constexpr std::size_t count = 60;
    std::vector<Kernel> kernels;
    for (std::size_t i = 0; i < count; ++i) {
        Names paths;
        Names names;
        for (std::size_t j = 0; j < count; ++j) {
            if ((i + j) % 7 != 0) {
                paths.push_back("p" + std::to_string(j) + "/");
            }
            if ((i + 2 * j) % 5 != 0) {
                names.push_back("n" + std::to_string(j));
            }
        }
        kernels.push_back(kernelAt(paths, names));
    }
    NetMatcher matcher(kernels, longestNet);
    for (std::size_t i = 0; i < 2 * count * count; ++i) {
        const std::string net =
            "/p" + std::to_string(i % count) + "/n" + std::to_string(i / count % count);
        ASSERT_EQ(numbersOf(matcher.owners(net)), plainOwnersOf(net, kernels)) << net;
    }
}

/// Kernels and nets over few letters.
class RandomNets {
public:
    std::size_t below(std::size_t limit) { return engine_() % limit; }

    std::string text(std::size_t longest) {
        std::string result;
        for (std::size_t size = below(longest + 1); size > 0; --size) {
            result += "/ab"[below(3)];
        }
        return result;
    }

    Names texts(std::size_t most, std::size_t longest) {
        Names result;
        for (std::size_t count = below(most); count > 0; --count) {
            result.push_back(text(longest));
        }
        return result;
    }

private:
    std::mt19937 engine_{20260131};
};

TEST(NetMatcher, AgreesWithLookingAtEachKernel) {
    RandomNets random;
    std::size_t owned = 0;
    for (int i = 0; i < 1000 && !testing::Test::HasFailure(); ++i) {
        std::vector<Kernel> kernels;
        for (std::size_t count = random.below(i % 10 == 0 ? 150 : 8); count > 0; --count) {
            kernels.push_back(kernelAt(random.texts(4, 4), random.texts(3, 2), random.texts(3, 2)));
        }
        NetMatcher matcher(kernels, longestNet);
        for (int j = 0; j < 20; ++j) {
            const std::string net = "/" + random.text(8);
            const Numbers expected = plainOwnersOf(net, kernels);
            owned += expected.size();
            EXPECT_EQ(numbersOf(matcher.owners(net)), expected) << net;
            const std::size_t most = std::min(expected.size(), 1 + random.below(5));
            const auto end = expected.begin() + static_cast<std::ptrdiff_t>(most);
            EXPECT_EQ(numbersOf(matcher.owners(net, std::max<std::size_t>(most, 1))),
                      Numbers(expected.begin(), end))
                << net;
        }
    }
    EXPECT_GT(owned, 20000);
}

} // namespace

} // namespace consolidator::test
