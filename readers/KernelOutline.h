// What the kernel description reader takes of its document, while the document streams by.
#pragma once

#include "consolidated/Diagnostic.h"
#include "model/Kernel.h"
#include "readers/HdlReservedWords.h"
#include "shared/schemas/Binding.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Makes kernel records of a kernel description document, without a tree of its elements: beside
/// the records there is only ever one kernel and one argument in memory.
class KernelOutline {
public:
    /// The most bytes that the kernels of one document may take over from earlier ones, which grows
    /// with the square of the document: each argument counts `bytesPerArgument` and its three
    /// texts.
    static constexpr std::uint64_t mostCarried = std::uint64_t{256} << 20U;
    static constexpr std::uint64_t bytesPerArgument = 128;

    /// The most arguments that are looked at to tell how one that is passed over differs from the
    /// one before it: a document full of repeats takes no longer.
    static constexpr std::size_t mostComparisons = 100000;

    /// `reservedWords` gives arguments their source names. Arguments that are passed over although
    /// they are not the same as before make a remark in `diagnostic`. Both must outlive this
    /// object.
    KernelOutline(const HdlReservedWords& reservedWords, Diagnostic& diagnostic);

    /// Reads a document to its end and returns its kernels. An object is for one document only.
    /// Throws lmx60::c_lmx_exception when the document cannot be read or asks for more than
    /// `mostCarried`.
    std::vector<Kernel> read(std::istream& stream, const std::string& documentName);

private:
    // The tables, one per element of which something is taken.
    static const lmx60::ElementKind& projectKind();
    static const lmx60::ElementKind& platformKind();
    static const lmx60::ElementKind& deviceKind();
    static const lmx60::ElementKind& coreKind();
    static const lmx60::ElementKind& kernelKind();
    static const lmx60::ElementKind& argumentKind();

    void addArgument();
    void remarkOnRepeat(std::string_view source);
    void addKernel();
    void keepCopy();

    const HdlReservedWords& reservedWords_;
    Diagnostic& diagnostic_;
    std::size_t comparisonsLeft_ = mostComparisons;
    std::vector<Kernel> kernels_;
    std::uint64_t carried_ = 0; ///< What `kernels_` have taken over.

    Kernel kernel_;           ///< One for all, so that each has the arguments of those before it.
    bool isComplete_ = false; ///< It has ended. Its copy is made when the next one needs it.
    std::uint64_t ownBytes_ = 0;     ///< Of the arguments that it got from the open kernel,
    std::uint64_t carriedBytes_ = 0; ///< and from those before.

    // The attributes of the element that is open. Empty in between.
    lmx60::Attribute<std::string> kernelName_;
    lmx60::Attribute<std::string> argumentName_;
    lmx60::Attribute<std::string> argumentType_;
    lmx60::Attribute<std::uint32_t> addressQualifier_; ///< Only to be checked.
};

} // namespace consolidator
