// What the fuzz targets share: how they fail, files in memory, and what must hold for the kernels
// of any reader.
//
// A target is one .cpp file that defines LLVMFuzzerTestOneInput(). Built for fuzzing, libFuzzer
// calls it with bytes of its own making; in every other build, ReplayMain.cpp calls it with the
// files of the target's corpus.
#pragma once

#include "consolidated/ConsolidatedFile.h"
#include "consolidated/Diagnostic.h"
#include "model/Kernel.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace consolidator::fuzz {

/// Ends the process, as a crash does, unless `holds`; `what` says what was expected to hold.
void require(bool holds, const char* what);

/// The input as text.
std::string textOf(const std::uint8_t* data, std::size_t size);

/// A file without a place on any disk, which can be opened by its path as often as one likes.
class MemoryFile {
public:
    MemoryFile();
    ~MemoryFile();
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    const std::string& path() const { return path_; }
    void setBytes(std::string_view bytes);
    std::string bytes() const;

private:
    int descriptor_;
    std::string path_;
};

/// A directory in memory, where the machine has one, for as long as the process lives.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    std::string path(std::string_view name) const;
    void write(std::string_view name, std::string_view bytes) const;

    /// All bytes of a file; nothing if there is none.
    std::optional<std::string> read(std::string_view name) const;

    /// Removes a file, if it is there.
    void remove(std::string_view name) const;

    /// Removes all files.
    void clear() const;

private:
    std::string path_;
};

/// A source that delivers a few bytes at a time, as a slow pipe does.
class TricklingSource final : public std::streambuf {
public:
    explicit TricklingSource(std::string text) : text_(std::move(text)) {}

protected:
    std::streamsize xsgetn(char* bytes, std::streamsize count) override;

private:
    static constexpr std::size_t portion = 5;

    std::string text_;
    std::size_t position_ = 0;
};

/// All that one reading left behind.
struct Reading {
    bool succeeded = false;
    bool threw = false;
    std::vector<Kernel> kernels;
    std::optional<Diagnostic::Remark> stopped;
    std::vector<Diagnostic::Remark> remarks;
    std::uint64_t remarkCount = 0;
};

/// Whether every field of the two is the same.
bool same(const Kernel& left, const Kernel& right);
bool same(const std::vector<Kernel>& left, const std::vector<Kernel>& right);

/// Requires that no list of named elements in the kernel holds two of the same name.
void requireUniqueNames(const Kernel& kernel);

/// The same, and that no two conditions are equal.
void requireUniqueLists(const Kernel& kernel);

/// Requires that kernels that a reader has made can be merged, as often as one likes, and stored.
/// `mayHoldZeroBytes`: texts may come back cut.
void requireUsable(const std::vector<Kernel>& kernels, bool mayHoldZeroBytes);

/// Requires of two readings of the same bytes that nothing tells them apart.
void requireSame(const Reading& first, const Reading& second);

/// A project for the readers that need one, with the rest of the input. What stands before the
/// first line "---" makes the kernels, a word and its value on each line:
///
///     kernel scale                begins a kernel
///     path top/scale_1            an instance path
///     arg size_r                  an argument; its hardware name follows
///     var sum_reg                 a local variable, likewise
///     reg /top/scale_1/sum_reg    a register that the project knows already
///     ---
///
/// Without such a line the kernels are fixed ones.
struct ProjectAndText {
    std::vector<Kernel> kernels;
    std::string text;
};
ProjectAndText splitProject(std::string_view bytes);

/// Lets a reader made by make(source) read; notes what it throws, as ConsolidatedFile does.
template <typename Make>
Reading readingOf(Make make, std::unique_ptr<std::streambuf> source) {
    auto reader = make(std::move(source));
    Reading reading;
    try {
        reading.succeeded = reader->parse();
    } catch (const std::exception&) {
        reading.threw = true;
    }
    reading.kernels = reader->kernels();
    reading.stopped = reader->diagnostic().stopped();
    reading.remarks = reader->diagnostic().remarks();
    reading.remarkCount = reader->diagnostic().remarkCount();
    return reading;
}

/// Requires of a reader whatever must hold for all of them: the same bytes give the same result
/// however they arrive, and the kernels can be used; and that ConsolidatedFile takes in what was
/// read. Returns the reading.
template <typename Make>
Reading checkReader(Make make, const std::string& text) {
    Reading reading = readingOf(make, std::make_unique<std::stringbuf>(text));
    requireSame(reading, readingOf(make, std::make_unique<TricklingSource>(text)));
    requireUsable(reading.kernels, text.find('\0') != std::string::npos);

    ConsolidatedFile project;
    const auto reader = make(std::make_unique<std::stringbuf>(text));
    project.addInputFile(*reader);
    ConsolidatedFile expected;
    if (reading.succeeded && !reading.threw) {
        for (const Kernel& kernel : reading.kernels) {
            expected.mergeKernel(kernel);
        }
    }
    require(same(project.kernels(), expected.kernels()), "adding an input merges its kernels");
    return reading;
}

} // namespace consolidator::fuzz
