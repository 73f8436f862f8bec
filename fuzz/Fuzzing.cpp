#include "fuzz/Fuzzing.h"

#include "consolidated/FileHandle.h"
#include "model/Words.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sys/mman.h>
#include <system_error>
#include <tuple>
#include <unistd.h>

namespace consolidator::fuzz {

namespace {

constexpr std::string_view fixedProject = "kernel scale\n"
                                          "path top/scale_1\n"
                                          "path top/scale_10\n"
                                          "arg size_r\n"
                                          "var sum\n"
                                          "kernel check\n"
                                          "path k\n"
                                          "path\n"
                                          "var crc\n"
                                          "var\n"
                                          "reg /top/k/crc\n";

template <typename Elements, typename KeyOf>
void requireUnique(const Elements& elements, KeyOf keyOf, const char* what) {
    std::set<decltype(keyOf(elements.front()))> keys;
    for (const auto& element : elements) {
        require(keys.insert(keyOf(element)).second, what);
    }
}

std::vector<Kernel> kernelsOf(std::string_view definitions) {
    std::vector<Kernel> kernels;
    while (!definitions.empty()) {
        const std::size_t end = definitions.find('\n');
        std::string_view line = definitions.substr(0, end);
        definitions.remove_prefix(end == std::string_view::npos ? definitions.size() : end + 1);
        const std::string_view word = takeWord(line);
        std::string value(takeWord(line));
        std::erase(value, '\0'); // which a stored text does not keep
        if (word == "kernel" || kernels.empty()) {
            kernels.emplace_back().setName(value);
        } else if (word == "path") {
            kernels.back().addInstancePath(value);
        } else if (word == "arg") {
            kernels.back().addArgument(value, value, "int");
        } else if (word == "var") {
            kernels.back().addVariable(value + "_source", value, "int");
        } else if (word == "reg") {
            kernels.back().addHardwareLocation(value, 1, 4096, 7);
        }
    }
    return kernels;
}

} // namespace

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {data, data + size};
}

MemoryFile::MemoryFile()
    : descriptor_(memfd_create("consolidator-fuzz", MFD_CLOEXEC)),
      path_("/proc/self/fd/" + std::to_string(descriptor_)) {
    require(descriptor_ >= 0, "there are files in memory");
}

MemoryFile::~MemoryFile() {
    close(descriptor_);
}

void MemoryFile::setBytes(std::string_view bytes) {
    const bool isEmpty = ftruncate(descriptor_, 0) == 0;
    const ssize_t written = pwrite(descriptor_, bytes.data(), bytes.size(), 0);
    require(isEmpty && written == static_cast<ssize_t>(bytes.size()),
            "a file in memory is written");
}

std::string MemoryFile::bytes() const {
    const off_t size = lseek(descriptor_, 0, SEEK_END);
    std::string result(static_cast<std::size_t>(std::max<off_t>(size, 0)), '\0');
    const ssize_t came = pread(descriptor_, result.data(), result.size(), 0);
    require(came == size, "a file in memory is read");
    return result;
}

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

std::streamsize TricklingSource::xsgetn(char* bytes, std::streamsize count) {
    const std::size_t most = std::min(portion, static_cast<std::size_t>(count));
    const std::size_t came = text_.copy(bytes, most, position_);
    position_ += came;
    return static_cast<std::streamsize>(came);
}

bool same(const Kernel& left, const Kernel& right) {
    return left.name() == right.name() && left.type() == right.type() &&
           left.instancePaths() == right.instancePaths() && left.arguments() == right.arguments() &&
           left.variables() == right.variables() &&
           left.hardwareVariables() == right.hardwareVariables() &&
           left.breakableConditions() == right.breakableConditions() &&
           left.brams() == right.brams();
}

bool same(const std::vector<Kernel>& left, const std::vector<Kernel>& right) {
    return std::ranges::equal(
        left, right, [](const Kernel& one, const Kernel& other) { return same(one, other); });
}

void requireUniqueNames(const Kernel& kernel) {
    const auto sourceNameOf = [](const Variable& v) { return std::string_view(v.sourceName); };
    requireUnique(
        kernel.instancePaths(), [](const std::string& path) { return std::string_view(path); },
        "instance paths are unique");
    requireUnique(kernel.arguments(), sourceNameOf, "arguments are unique");
    requireUnique(kernel.variables(), sourceNameOf, "variables are unique");
    requireUnique(
        kernel.hardwareVariables(),
        [](const HardwareVariable& variable) { return std::string_view(variable.name); },
        "registers are unique");
}

void requireUniqueLists(const Kernel& kernel) {
    requireUniqueNames(kernel);
    requireUnique(
        kernel.breakableConditions(),
        [](const BreakableCondition& c) { return std::tie(c.kind, c.condition, c.line, c.file); },
        "conditions are unique");
}

void requireUsable(const std::vector<Kernel>& kernels, bool mayHoldZeroBytes) {
    static const MemoryFile storage;
    ConsolidatedFile project;
    for (const Kernel& kernel : kernels) {
        requireUniqueLists(kernel);
        project.mergeKernel(kernel);

        const FileHandle file = openFile(storage.path(), "w+");
        const std::uint32_t written = kernel.write(file.get());
        require(std::ftell(file.get()) == static_cast<long>(written),
                "writing tells how many bytes went out");
        std::rewind(file.get());
        Kernel stored;
        require(stored.read(file.get()), "a kernel that was written can be read");
        require(std::ftell(file.get()) == static_cast<long>(written), "reading takes all bytes");
        require(mayHoldZeroBytes || same(stored, kernel), "a kernel is read as it was written");
    }
    requireUnique(
        project.kernels(), [](const Kernel& kernel) { return std::string_view(kernel.name()); },
        "kernels are unique");
    const std::vector<Kernel> merged = project.kernels();
    for (const Kernel& kernel : merged) {
        requireUniqueLists(kernel);
    }
    for (const Kernel& kernel : kernels) {
        project.mergeKernel(kernel);
    }
    require(same(merged, project.kernels()), "merging the same kernels again changes nothing");
}

void requireSame(const Reading& first, const Reading& second) {
    require(first.succeeded == second.succeeded && first.threw == second.threw,
            "the same bytes lead to the same end");
    require(same(first.kernels, second.kernels), "the same bytes give the same kernels");
    require(first.stopped == second.stopped && first.remarks == second.remarks &&
                first.remarkCount == second.remarkCount,
            "the same bytes get the same remarks");
}

ProjectAndText splitProject(std::string_view bytes) {
    constexpr std::string_view separator = "---\n";
    const std::size_t middle = bytes.find(separator);
    if (middle == std::string_view::npos || (middle > 0 && bytes[middle - 1] != '\n')) {
        return {kernelsOf(fixedProject), std::string(bytes)};
    }
    return {kernelsOf(bytes.substr(0, middle)),
            std::string(bytes.substr(middle + separator.size()))};
}

} // namespace consolidator::fuzz
