#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <unistd.h>

namespace consolidator::test {

TemporaryDirectory::TemporaryDirectory()
    : TemporaryDirectory(std::filesystem::temp_directory_path()) {}

TemporaryDirectory TemporaryDirectory::inMemory() {
    const std::filesystem::path memory = "/dev/shm";
    return TemporaryDirectory(
        access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path());
}

TemporaryDirectory::TemporaryDirectory(const std::filesystem::path& parent) {
    std::string name = (parent / "consolidator-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("cannot make a temporary directory");
    }
    directory_ = name;
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

std::string TemporaryDirectory::path(std::string_view name) const {
    return (directory_ / name).string();
}

std::string TemporaryDirectory::write(std::string_view name, std::string_view bytes) const {
    std::ofstream file(path(name), std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    EXPECT_TRUE(file.good()) << "cannot write " << path(name);
    return path(name);
}

std::string TemporaryDirectory::read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << "cannot read " << path(name);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TemporaryDirectory::has(std::string_view name) const {
    return std::filesystem::exists(path(name));
}

std::map<std::string, std::string> TemporaryDirectory::contents() const {
    std::map<std::string, std::string> result;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory_)) {
        const std::string name = entry.path().lexically_relative(directory_).string();
        const bool isPlain = entry.symlink_status().type() == std::filesystem::file_type::regular;
        result[name] = isPlain ? read(name) : "(no regular file)";
    }
    return result;
}

std::vector<std::string>
TemporaryDirectory::differencesFrom(const std::map<std::string, std::string>& expected) const {
    const auto present = contents();
    std::set<std::string> names;
    for (const auto& [name, bytes] : present) {
        const auto other = expected.find(name);
        if (other == expected.end() || other->second != bytes) {
            names.insert(name);
        }
    }
    for (const auto& [name, bytes] : expected) {
        if (!present.contains(name)) {
            names.insert(name);
        }
    }
    return {names.begin(), names.end()};
}

} // namespace consolidator::test
