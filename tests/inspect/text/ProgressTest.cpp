// The progress bar, with a clock of the test's own.

#include "inspect/text/Progress.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <sstream>
#include <string>

namespace consolidator::inspect::test {

namespace {

struct ProgressBar : testing::Test {
    static constexpr std::uint64_t size = std::uint64_t{100} << 20;

    std::ostringstream out;
    std::chrono::steady_clock::time_point now;
    Progress progress{out, true, [this] { return now; }};

    void pass(int milliseconds) { now += std::chrono::milliseconds(milliseconds); }
};

TEST_F(ProgressBar, ShowsHowMuchHasBeenReadAndGoes) {
    progress.begin("top\n.ll", size);
    pass(100);
    progress.update(size / 4);
    EXPECT_EQ(out.str(), "\r\x1b[Ktop\\n.ll  [##########..............................]  25 %");
    out.str("");
    progress.end();
    EXPECT_EQ(out.str(), "\r\x1b[K");
    progress.end();
    EXPECT_EQ(out.str(), "\r\x1b[K");
}

TEST_F(ProgressBar, IsWrittenTenTimesASecondAtMost) {
    progress.begin("top.ll", size);
    for (std::uint64_t i = 0; i < 1000; ++i) {
        pass(1);
        progress.update(i);
    }
    const std::string text = out.str();
    EXPECT_EQ(std::ranges::count(text, '\r'), 10);
}

TEST_F(ProgressBar, IsFullAtTheEndAndNeverMore) {
    progress.begin("top.ll", size);
    pass(100);
    progress.update(2 * size);
    EXPECT_EQ(out.str(), "\r\x1b[Ktop.ll  [" + std::string(40, '#') + "]  100 %");
}

TEST_F(ProgressBar, IsNotShownForSmallFilesOrWithoutATerminal) {
    progress.begin("top.ll", Progress::shortestFile - 1);
    pass(1000);
    progress.update(1);
    progress.end();
    Progress quiet(out, false, [this] { return now; });
    quiet.begin("top.ll", size);
    pass(1000);
    quiet.update(1);
    quiet.end();
    EXPECT_EQ(out.str(), "");
}

} // namespace

} // namespace consolidator::inspect::test
