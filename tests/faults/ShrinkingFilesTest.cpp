// Files that become shorter while they are read: what came counts, and the run goes on.

#include "driver/Driver.h"
#include "tests/support/ArgumentVector.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <atomic>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace consolidator::test {

namespace {

/// While it lives, the file has now all of its bytes and now only some of them.
class Shrinking {
public:
    Shrinking(const TemporaryDirectory& directory, const std::string& name, std::string bytes)
        : path_(directory.write(name, bytes)), bytes_(std::move(bytes)), thread_([this] {
              for (std::size_t round = 1; !over_; ++round) {
                  resize(bytes_.size() * (round * 7 % 11) / 11);
                  resize(bytes_.size()); // the rest is now zero bytes
              }
          }) {}
    ~Shrinking() {
        over_ = true;
        thread_.join();
    }
    Shrinking(const Shrinking&) = delete;
    Shrinking& operator=(const Shrinking&) = delete;

private:
    void resize(std::size_t size) const {
        EXPECT_EQ(truncate(path_.c_str(), static_cast<off_t>(size)), 0);
    }

    std::string path_;
    std::string bytes_;
    std::atomic<bool> over_ = false;
    std::thread thread_;
};

struct ShrinkingFiles : testing::Test {
    /// Runs often enough that some run meets the file in the middle of its reading.
    void expectSuccess(const std::string& option, const std::string& bytes) const {
        const Shrinking file(directory, "input", bytes);
        for (int i = 0; i < 30; ++i) {
            runOnce({"-c", "-f", directory.path("db"), option, directory.path("input")});
            const std::string database = directory.read("db");
            EXPECT_TRUE(database.starts_with("\xD4\xDA\xEF\xBE")) << option;
            // It can be read again, and what is read makes the same file.
            runOnce({"-f", directory.path("db"), "-h", directory.path("missing")});
            EXPECT_EQ(directory.read("db").size() > 0, true) << option;
        }
    }

    static void runOnce(const std::vector<std::string>& words) {
        std::ostringstream out;
        std::ostringstream err;
        std::vector<std::string> all{"consolidator"};
        all.insert(all.end(), words.begin(), words.end());
        const ArgumentVector vector(all);
        EXPECT_EQ(run(vector.count(), vector.pointers(), out, err), 0);
        EXPECT_EQ(out.str(), "");
        EXPECT_TRUE(err.str().empty() || err.str() == "Could not parse kernel file\n" ||
                    err.str() == "Parse error\n")
            << err.str();
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
    const Shrinking file(directory, "input", directory.read("db"));
    for (int i = 0; i < 100; ++i) {
        runOnce({"-f", directory.path("input"), "-u", directory.path("out")});
        const std::string dumped = directory.read("out");
        // All of the payload or nothing; zero bytes stand where the file was cut off before.
        EXPECT_TRUE(dumped.empty() || dumped.size() == blob.size()) << dumped.size();
    }
}

} // namespace

} // namespace consolidator::test
