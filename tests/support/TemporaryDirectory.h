// A directory of a test's own, and whole files in and out of it.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// Made empty, and removed with all it holds at the end of its scope.
class TemporaryDirectory {
public:
    TemporaryDirectory();

    /// One whose files are kept in memory where the system offers that, for tests that write
    /// thousands of them.
    static TemporaryDirectory inMemory();

    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    /// The full path of a file in this directory, whether it exists or not.
    std::string path(std::string_view name) const;

    /// Writes a file byte for byte and returns its full path.
    std::string write(std::string_view name, std::string_view bytes) const;

    /// All bytes of a file; the test fails if there is none.
    std::string read(std::string_view name) const;

    bool has(std::string_view name) const;

    /// Every entry in it, in folders too, by name: a regular file's bytes, and a word for what is
    /// no regular file. To be compared before and after something that must touch nothing else.
    std::map<std::string, std::string> contents() const;

    /// The names of the entries that are not as in `expected`, or are there or missing in spite of
    /// it: for contents that are too large to be printed.
    std::vector<std::string>
    differencesFrom(const std::map<std::string, std::string>& expected) const;

private:
    explicit TemporaryDirectory(const std::filesystem::path& parent);

    std::filesystem::path directory_;
};

} // namespace consolidator::test
