// No input leaves a descriptor behind, so that their number has no limit.

#include "driver/Driver.h"
#include "tests/support/ArgumentVector.h"
#include "tests/support/Command.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <deque>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

constexpr int manyInputs = 1000;

auto openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                         std::filesystem::directory_iterator());
}

TEST(Descriptors, SufficeForAThousandHierarchiesWhenThereAreSixteen) {
    const TemporaryDirectory directory;
    std::vector<std::string> arguments{"-f", "db"};
    std::deque<std::string> names; // the kernels refer to them
    std::vector<KnownKernel> kernels;
    for (int i = 0; i < manyInputs; ++i) {
        const std::string& name = names.emplace_back("kernel_" + std::to_string(i));
        directory.write(name, name + "\ntype: c\n");
        arguments.insert(arguments.end(), {"-h", name});
        kernels.push_back({name, 1});
    }
    auto expected = directory.contents();
    expected["db"] = knownDatabase(kernels);
    EXPECT_EQ(runConsolidator(directory.path("."), arguments, limited(RLIMIT_NOFILE, 16)),
              CommandResult{});
    EXPECT_EQ(directory.contents(), expected);
}

TEST(Descriptors, AreClosedAfterInputsOfEveryKindAndFate) {
    const TemporaryDirectory directory;
    const std::string text = directory.write("text", "scale_rows\ntype: c\n");
    const std::vector<std::string> paths = {text, directory.path("."), directory.path("missing")};
    for (const std::string& database : {directory.path("db"), directory.path("missing/db")}) {
        std::vector<std::string> words{"consolidator", "-f", database, "-d", text};
        for (int i = 0; i < manyInputs / 10; ++i) {
            for (const char* option : {"-h", "-k", "-s", "-x", "-l", "-r"}) {
                words.insert(words.end(), {option, paths[static_cast<std::size_t>(i) % 3]});
            }
        }
        const auto before = openDescriptors();
        std::ostringstream out;
        std::ostringstream err;
        const ArgumentVector vector(words);
        (void)run(vector.count(), vector.pointers(), out, err);
        EXPECT_EQ(openDescriptors(), before) << database;
    }
}

} // namespace

} // namespace consolidator::test
