// The main function of a fuzz target that is not built for fuzzing: feeds it the files of the
// directories that are named on the command line. A directory that is missing counts as empty, but
// if there is no file at all the run fails.

#include "fuzz/Fuzzing.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace {

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& directory) {
    std::vector<std::filesystem::path> files;
    std::error_code missing;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory, missing)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Returns how many files there were.
std::size_t replay(const std::filesystem::path& directory) {
    const auto files = filesIn(directory);
    for (const auto& path : files) {
        std::cout << path.string() << std::endl; // the last one named is the one that failed
        const std::string bytes = contentOf(path);
        const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
    return files.size();
}

} // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        count += replay(argv[i]);
    }
    std::cout << count << " inputs" << std::endl;
    return count > 0 ? 0 : 1;
}
