// Runs of the driver on damaged files, each compared with what a naive database makes of the same.
#pragma once

#include "tests/damage/Watchdog.h"
#include "tests/support/NaiveDatabase.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstddef>
#include <string>
#include <vector>

namespace consolidator::test {

/// The most memory that a run on `size` bytes of input may take.
constexpr std::size_t memoryLimit(std::size_t size) {
    return std::size_t{8} * 1024 * 1024 + 64 * size;
}

/// A directory with a database, "db", and a way to run the driver on it.
class DamagedRun {
public:
    DamagedRun();

    /// Runs the driver with "-f db" and more words. It must end with this status and these
    /// messages, and take no more memory than memoryLimit(inputSize).
    void expectRun(const std::vector<std::string>& words, std::size_t inputSize, int status = 0,
                   const std::string& messages = "") const;

    /// The database must hold the bytes that `expected` writes; it is then read back completely,
    /// unless it has a section of unknown type, and holds every kernel.
    void expectDatabase(NaiveDatabase& expected) const;

    /// One more run, with a hierarchy file that states nothing new, must keep all that is there.
    void expectAnotherRunToKeepAll() const;

    /// Names the case that comes next, and bounds its time.
    void begin(const std::string& what) { watchdog_.begin(what); }

    TemporaryDirectory directory = TemporaryDirectory::inMemory();
    std::string db = directory.path("db");
    std::string hierarchy = directory.write("good.hier", "checksum type: c\n");
    KnownKernel stated = {.name = "checksum", .type = 1}; ///< What "good.hier" says.

private:
    Watchdog watchdog_;
};

} // namespace consolidator::test
