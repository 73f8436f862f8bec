// Reader of the hierarchy metadata file that the system linker writes: which kernels there are,
// how they were written and where their instances stand in the linked design.
//
// The file is a run of words separated by white space; line ends count only for comments.
//
//     # written by the linker            a word with "#" in front: the rest of the line is skipped
//     version: 1.0                       version of the format
//     scale_rows                         any other word begins a kernel of that name
//     type: hls                          "clc", "c", "ip" or "hls"; other words mean unknown
//     instance path: top/scale_rows_1    one instance; as many of these as there are instances
//     instance path: top/scale_rows_2
//
// Nothing is checked beyond that. "type:" and "instance" before the first kernel name go to the
// first kernel. A word that cannot be read leaves the word before it in place, as a standard
// stream does, and that word is then handled once more. So a kernel name that ends the file, with
// white space behind it, gives a second record without type or paths, and a file without any word
// gives one record without a name. The databases in use were made so; it stays.
#pragma once

#include "consolidated/InputFile.h"
#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace consolidator {

/// Makes the kernels of a project, with their types and instance paths.
class HierarchyFile final : public InputFile {
public:
    /// The highest version of the format that is read.
    static constexpr double supportedVersion = 1.0;

    /// The most characters that may follow the "#" word of a comment on its line.
    static constexpr std::size_t longestComment = 254;

    using InputFile::InputFile;

    /// Appends the kernels in the order in which the file names them. Fails, with a message, on a
    /// version above the supported one and on an "instance" without "path:"; fails in silence on a
    /// comment that is too long, on a version that is no number and on a file that cannot be read
    /// (unless it breaks off behind "instance"). Without a file name the message about a version
    /// cannot be completed, and the stream for messages is bad from then on.
    bool parse() override;

private:
    bool handle(std::string& word);
    bool skipComment();
    bool readVersion();
    void reportUnsupportedVersion();
    bool readInstance(std::string& word);
    void readType(std::string& word);
    void beginKernel(const std::string& name);
    void appendCurrent();
    void remarkOnRepeatedWord(const std::string& word);

    /// The kernel whose settings are being read; it has no name before the first one.
    Kernel current_;
    std::uint64_t begun_ = 0;
    std::uint64_t appended_ = 0;
    std::uint64_t wordLine_ = 0; ///< Where the word that is being handled stands.
};

} // namespace consolidator
