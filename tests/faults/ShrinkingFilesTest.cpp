// Files that become shorter while they are read: what came counts, and the run goes on.

#include "tests/support/Bytes.h"
#include "tests/support/DriverRun.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <fcntl.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace consolidator::test {

namespace {

/// While it lives, the file is cut, filled up with zero bytes, written anew and left alone for a
/// while, again and again.
class Shrinking {
public:
    Shrinking(const std::string& path, std::string bytes)
        : descriptor_(open(path.c_str(), O_WRONLY | O_CLOEXEC)),
          bytes_(std::move(bytes)),
          thread_([this] {
              for (std::size_t round = 1; !over_; ++round) {
                  resize(bytes_.size() * (round * 7 % 11) / 11);
                  resize(bytes_.size());
                  EXPECT_EQ(pwrite(descriptor_, bytes_.data(), bytes_.size(), 0),
                            static_cast<ssize_t>(bytes_.size()));
                  std::this_thread::sleep_for(std::chrono::milliseconds(round % 23));
              }
          }) {}
    ~Shrinking() {
        over_ = true;
        thread_.join();
        close(descriptor_);
    }
    Shrinking(const Shrinking&) = delete;
    Shrinking& operator=(const Shrinking&) = delete;

private:
    void resize(std::size_t size) const {
        EXPECT_EQ(ftruncate(descriptor_, static_cast<off_t>(size)), 0);
    }

    int descriptor_;
    std::string bytes_;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

/// However busy the machine is, some of so many runs meet a file that nobody cuts meanwhile.
constexpr int mostRuns = 5000;

struct ShrinkingFiles : testing::Test {
    /// Runs often enough that some run meets the file in the middle of its reading, and until one
    /// met it whole.
    void expectSuccess(const std::string& option, const std::string& bytes) const {
        SCOPED_TRACE(option);
        const std::string input = directory.write("input", bytes);
        const std::string whole = databaseFrom(option);
        const Shrinking file(input, bytes);
        bool wasWhole = false;
        for (int i = 0; (i < 30 || !wasWhole) && i < mostRuns && !HasFailure(); ++i) {
            const std::string database = databaseFrom(option);
            wasWhole = wasWhole || database == whole;
            EXPECT_TRUE(database.starts_with("\xD4\xDA\xEF\xBE"));
            expectAllReadAgain(database);
        }
        EXPECT_TRUE(wasWhole);
    }

    std::string databaseFrom(const std::string& option) const {
        runOnce({"-c", "-f", directory.path("db"), option, directory.path("input")});
        return directory.read("db");
    }

    /// A run that finds nothing new must write what the database, which lies there, holds.
    void expectAllReadAgain(const std::string& database) const {
        NaiveDatabase naive = NaiveDatabase::read(database);
        EXPECT_TRUE(naive.complete);
        runOnce({"-f", directory.path("db"), "-h", directory.path("missing")});
        EXPECT_TRUE(directory.read("db") == naive.write()) << "another run has changed more";
    }

    static void runOnce(const std::vector<std::string>& words) {
        const CommandResult result = runDriver(words);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.empty() || result.err == "Could not parse kernel file\n" ||
                    result.err == "Parse error\n")
            << result.err;
    }

    TemporaryDirectory directory;
};

TEST_F(ShrinkingFiles, AsDwarf) {
    expectSuccess("-d", std::string(2000000, 'd'));
}

TEST_F(ShrinkingFiles, AsHierarchy) {
    expectSuccess("-h", repeated("scale_rows\ntype: hls\ninstance path: top/k\n", 5000));
}

TEST_F(ShrinkingFiles, AsKernelDescription) {
    expectSuccess("-k", "<project name=\"p\"><platform><device><core>" +
                            repeated("<kernel name=\"scale_rows\"/>", 3000) +
                            "</core></device></platform></project>");
}

TEST_F(ShrinkingFiles, AsOtherTexts) {
    expectSuccess("-s", repeated("RTL 1 s (a == 1'b1)\nat: x.cpp:12\n\n", 5000));
    expectSuccess("-x", repeated("<vd:acceleratorMap vd:functionName=\"blend\" >\n", 5000));
    expectSuccess("-l", repeated("Bit 7 0x1f 12 SLICE_X1Y2 0 Net=top/k/rows[3]\n", 5000));
    expectSuccess("-r", repeated("4. Memory Performance - Inferred\n", 5000));
}

TEST_F(ShrinkingFiles, AsDatabaseToDumpFrom) {
    const std::string blob(2000000, 'd');
    directory.write("dwarf", blob);
    runOnce({"-f", directory.path("db"), "-d", directory.path("dwarf")});
    const std::string database = directory.read("db");
    const Shrinking file(directory.write("input", database), database);
    bool wasWhole = false;
    for (int i = 0; (i < 100 || !wasWhole) && i < mostRuns && !HasFailure(); ++i) {
        runOnce({"-f", directory.path("input"), "-u", directory.path("out")});
        const std::string dumped = directory.read("out");
        // All of the payload or nothing; zero bytes stand where the file was cut off before.
        EXPECT_TRUE(dumped.empty() || dumped.size() == blob.size()) << dumped.size();
        EXPECT_EQ(dumped.find_first_not_of(bytes("d\0")), std::string::npos);
        wasWhole = wasWhole || dumped == blob;
    }
    EXPECT_TRUE(wasWhole);
}

} // namespace

} // namespace consolidator::test
