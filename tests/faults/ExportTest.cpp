// An export that finds no room for its file.

#include "tests/support/Bytes.h"
#include "tests/support/InspectRun.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::Pair;

TEST(Export, LeavesNothingWhenThereIsNoRoom) {
    const TemporaryDirectory directory;
    const std::string name = repeated("k", 200000);
    const std::string database =
        DatabaseBuilder().section(2, u32(1) + record({.name = name})).bytes();
    directory.write("db", database);
    directory.write("out", "old");
    for (const std::uint64_t room : {4096U, 100000U, 250000U}) {
        const CommandResult result = runInspector(
            directory.path("."), {"sqlite", "--force", "db", "out"}, limited(RLIMIT_FSIZE, room));
        EXPECT_EQ(result,
                  (CommandResult{2, "", "out: error: cannot be written: disk I/O error\n"}));
        EXPECT_THAT(directory.contents(), ElementsAre(Pair("db", database), Pair("out", "old")));
    }
}

} // namespace

} // namespace consolidator::test
