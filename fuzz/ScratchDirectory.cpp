#include "fuzz/ScratchDirectory.h"

#include "consolidated/FileHandle.h"
#include "fuzz/Fuzzing.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <unistd.h>

namespace consolidator::fuzz {

ScratchDirectory::ScratchDirectory() {
    const bool inMemory = access("/dev/shm", W_OK) == 0;
    path_ = inMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string();
    path_ += "/consolidator-fuzz-XXXXXX";
    require(mkdtemp(path_.data()) != nullptr, "a scratch directory is made");
}

ScratchDirectory::~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string ScratchDirectory::path(std::string_view name) const {
    std::string result = path_ + "/";
    return result.append(name);
}

void ScratchDirectory::write(std::string_view name, std::string_view bytes) const {
    const FileHandle file = openFile(path(name), "w");
    require(file && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size(),
            "a scratch file is written");
}

std::optional<std::string> ScratchDirectory::read(std::string_view name) const {
    std::ifstream file(path(name), std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void ScratchDirectory::remove(std::string_view name) const {
    std::filesystem::remove(path(name));
}

void ScratchDirectory::clear() const {
    for (const auto& file : std::filesystem::directory_iterator(path_)) {
        std::filesystem::remove_all(file);
    }
}

} // namespace consolidator::fuzz
