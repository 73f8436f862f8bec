// Signals that arrive while files are read and written: the result is the same as without them.

#include "consolidated/ConsolidatedFile.h"
#include "readers/HierarchyFile.h"
#include "tests/support/KnownKernels.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

namespace consolidator::test {

namespace {

volatile std::sig_atomic_t interruptions = 0;

void countInterruption(int) {
    interruptions = interruptions + 1;
}

void setTimer(suseconds_t microseconds) {
    const itimerval timer{{0, microseconds}, {0, microseconds}};
    setitimer(ITIMER_REAL, &timer, nullptr);
}

/// While it lives, a signal comes every half millisecond and interrupts system calls, which are not
/// started again.
class Interruptions {
public:
    Interruptions() {
        interruptions = 0;
        struct sigaction action = {};
        action.sa_handler = countInterruption;
        sigaction(SIGALRM, &action, &former_);
        setTimer(500);
    }
    ~Interruptions() {
        setTimer(0);
        sigaction(SIGALRM, &former_, nullptr);
    }
    Interruptions(const Interruptions&) = delete;
    Interruptions& operator=(const Interruptions&) = delete;

private:
    struct sigaction former_ = {};
};

/// Writes the text into the pipe in small pieces with pauses between them.
void serveSlowly(const std::string& path, const std::string& text) {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr); // they are for the reader
    const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    constexpr std::size_t pieceSize = 7;
    for (std::size_t at = 0; at < text.size(); at += pieceSize) {
        const std::string piece = text.substr(at, pieceSize);
        EXPECT_EQ(write(descriptor, piece.data(), piece.size()),
                  static_cast<ssize_t>(piece.size()));
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
    }
    close(descriptor);
}

TEST(Interruption, OfAReaderChangesNothing) {
    const TemporaryDirectory directory;
    const std::string path = directory.path("slow.hier");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::string text;
    for (int i = 0; i < 20; ++i) {
        text += "kernel_" + std::to_string(i) + "\ntype: hls\n";
    }
    std::thread writer(serveSlowly, path, text);
    HierarchyFile reader(path);
    {
        const Interruptions signals;
        EXPECT_TRUE(reader.parse());
        EXPECT_GT(interruptions, 0);
    }
    writer.join();
    ASSERT_EQ(reader.kernels().size(), 20U);
    EXPECT_EQ(reader.kernels().back().name(), "kernel_19");
    EXPECT_FALSE(reader.diagnostic().stopped());
}

TEST(Interruption, OfReadingAndWritingTheDatabaseChangesNothing) {
    const TemporaryDirectory directory;
    const std::string name(1000000, 'k');
    const std::string whole = knownDatabase({{name, 1}});
    directory.write("db", whole);
    const Interruptions signals;
    for (int run = 0; run < 1000 && (run < 20 || interruptions < 20); ++run) {
        ConsolidatedFile database;
        ASSERT_TRUE(database.open(directory.path("db"), false, false));
        ASSERT_EQ(database.kernels().size(), 1U);
        database.write();
    }
    EXPECT_GE(interruptions, 20);
    EXPECT_TRUE(directory.read("db") == whole) << "the database has changed";
}

} // namespace

} // namespace consolidator::test
