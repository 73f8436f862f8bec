// What the kernel description reader takes of its document, while the document streams by.
#pragma once

#include "consolidated/Diagnostic.h"
#include "model/ArgumentList.h"
#include "model/Kernel.h"
#include "readers/HdlReservedWords.h"
#include "shared/schemas/Binding.h"

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// Makes kernel records of a kernel description document, without a tree of its elements: beside
/// the records there is only ever one kernel and one argument in memory. All records share one list
/// of arguments, see ArgumentList.
class KernelOutline {
public:
    /// The most bytes that what the kernels of one document take over from earlier ones may have in
    /// a database, which grows with the square of the document: each argument its three texts and
    /// `bytesPerArgument`, for their lengths and the number of its instances. No database holds
    /// more.
    static constexpr std::uint64_t mostCarried = std::uint64_t{2} << 30U;
    static constexpr std::uint64_t bytesPerArgument = 16;

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

    const HdlReservedWords& reservedWords_;
    Diagnostic& diagnostic_;
    std::size_t comparisonsLeft_ = mostComparisons;
    Kernel empty_; ///< What all kernels are copies of: it has what they have in common.
    std::vector<Kernel> kernels_;
    std::uint64_t carried_ = 0; ///< What `kernels_` have taken over.

    /// Those of all kernels, so that each has the arguments of those before it.
    std::shared_ptr<VariableList> arguments_ = std::make_shared<VariableList>();
    std::uint64_t ownBytes_ = 0;     ///< Of the arguments that the open kernel has brought,
    std::uint64_t carriedBytes_ = 0; ///< and those before.

    // The attributes of the element that is open. Empty in between.
    lmx60::Attribute<std::string> kernelName_;
    lmx60::Attribute<std::string> argumentName_;
    lmx60::Attribute<std::string> argumentType_;
    lmx60::Attribute<std::uint32_t> addressQualifier_; ///< Only to be checked.
};

} // namespace consolidator
