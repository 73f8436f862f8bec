// Whether the JSON document of a database is that of its kernels.
#pragma once

#include "query/integrity/ByteRange.h"

#include <cstdint>
#include <optional>
#include <string>

namespace consolidator {

/// Renders the kernels of a kernel data section as a run does and compares the text with a document
/// on the way: one kernel at a time is in memory, and nothing of either text.
class DocumentCheck {
public:
    /// The first place at which the document is another one.
    struct Difference {
        std::uint64_t offset = 0;
        std::uint64_t kernel = 0; ///< Number of the kernel there, from 1; 0 outside of all.
    };

    /// The document stands in `file`, which `path` leads to, from `begin` to `end`, without the
    /// zero byte behind it.
    DocumentCheck(const std::string& path, const FileBytes& file, std::uint64_t begin,
                  std::uint64_t end)
        : path_(path), document_(file, begin, end) {}

    /// Compares it with the document of no kernels.
    std::optional<Difference> compare();

    /// Compares it with the document of the kernels whose section begins at `offset`, which has
    /// been found to be whole. `isTranslated` tells that their conditions are as in the document;
    /// else they are translated first. To be called once, as the other one.
    std::optional<Difference> compare(std::uint64_t offset, bool isTranslated);

private:
    template <typename WriteKernels>
    std::optional<Difference> compareWith(WriteKernels writeKernels);

    std::string path_;
    ByteRange document_;
    std::uint64_t kernel_ = 0; ///< The one that is being compared.
};

} // namespace consolidator
