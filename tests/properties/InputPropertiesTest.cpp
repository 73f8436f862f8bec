// What holds for every good input file: the database gets exactly the facts that the file states,
// and the same file given again adds nothing.

#include "tests/support/DriverRun.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/RandomInputs.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::uint32_t seeds = 200;

/// A project in which nets tell kernels apart: no instance path contains another one.
std::vector<KnownKernel> project() {
    KnownKernel scale;
    scale.name = "scale_rows";
    scale.instancePaths = {"top/region_0/scale_rows_1", "top/region_0/scale_rows_2"};
    scale.type = 4;
    scale.arguments = {{"in", "in_r", "int*"}, {"gain", "gain", "float"}};
    scale.variables = {{"sum", "sum_reg", "int"}, {"row", "row_reg", "int"}};
    KnownKernel checksum;
    checksum.name = "checksum";
    checksum.instancePaths = {"top/region_1/checksum_1"};
    checksum.variables = {{"crc", "crc_q", "int"}};
    return {scale, checksum};
}

/// Tests that run the driver on a database, "db", and one input file.
struct InputProperties : testing::Test {
    /// Gives the file three times and looks at the database after each run.
    void expectFactsOf(const StatedInput& input, const std::string& option,
                       const std::string& name) const {
        const std::string path = directory.write(name, input.text);
        for (int runs = 0; runs < 3; ++runs) {
            NaiveDatabase expected = NaiveDatabase::read(directory.read("db"));
            for (const KnownKernel& kernel : input.kernels) {
                expected.merge(kernel);
            }
            EXPECT_EQ(runDriver({"-f", directory.path("db"), option, path}), CommandResult{});
            ASSERT_TRUE(directory.read("db") == expected.write()) << input.text;
        }
    }

    /// The same for inputs of many seeds, each on a database with the project.
    template <typename MakeInput>
    void expectStatedFacts(const std::string& option, const std::string& name, MakeInput make) {
        for (std::uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            NaiveDatabase before;
            before.kernels = project();
            directory.write("db", before.write());
            RandomInputs random(seed);
            expectFactsOf(make(random), option, name);
        }
    }

    TemporaryDirectory directory = TemporaryDirectory::inMemory();
};

} // namespace

TEST_F(InputProperties, HierarchyFilesStateKernels) {
    expectStatedFacts("-h", "system.hier", [](RandomInputs& random) { return random.hierarchy(); });
}

TEST_F(InputProperties, HlsFilesStateConditionsAndVariables) {
    expectStatedFacts("-s", "checksum.hls",
                      [](RandomInputs& random) { return random.hls("checksum"); });
    expectStatedFacts("-s", "blend.hls", [](RandomInputs& random) { return random.hls("blend"); });
}

TEST_F(InputProperties, AuxiliaryFilesStateArguments) {
    expectStatedFacts("-x", "k_auxiliary.xml",
                      [](RandomInputs& random) { return random.auxiliary(); });
}

TEST_F(InputProperties, LogicLocationsStateRegisters) {
    expectStatedFacts("-l", "top.ll",
                      [](RandomInputs& random) { return random.logicLocations(project()); });
}

TEST_F(InputProperties, RamReportsStateNothing) {
    expectStatedFacts("-r", "ram.rpt",
                      [](RandomInputs& random) { return random.ramReport(project()); });
}

} // namespace consolidator::test
