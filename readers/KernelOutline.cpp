#include "readers/KernelOutline.h"

#include "shared/schemas/Exceptions.h"
#include "shared/schemas/XmlReader.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

using lmx60::attribute;
using lmx60::ElementKind;
using lmx60::inPlace;

namespace consolidator {

namespace {

constexpr std::string_view startCondition = "== $i/kc_start 1'b1";
constexpr std::string_view stopCondition = "== $i/kc_done 1'b1";

} // namespace

// The slice: <project> <platform> <device> <core> <kernel name> <arg name type addressQualifier>.

const ElementKind& KernelOutline::projectKind() {
    static constexpr std::array children{inPlace("platform", platformKind)};
    static constexpr ElementKind table{.children = children};
    return table;
}

const ElementKind& KernelOutline::platformKind() {
    static constexpr std::array children{inPlace("device", deviceKind)};
    static constexpr ElementKind table{.children = children};
    return table;
}

const ElementKind& KernelOutline::deviceKind() {
    static constexpr std::array children{inPlace("core", coreKind)};
    static constexpr ElementKind table{.children = children};
    return table;
}

const ElementKind& KernelOutline::coreKind() {
    static constexpr std::array children{inPlace("kernel", kernelKind)};
    static constexpr ElementKind table{.children = children};
    return table;
}

const ElementKind& KernelOutline::kernelKind() {
    static constexpr std::array attributes{attribute<&KernelOutline::kernelName_>("name")};
    static constexpr std::array children{inPlace("arg", argumentKind)};
    static constexpr ElementKind table{.attributes = attributes,
                                       .children = children,
                                       .end = lmx60::call<&KernelOutline::addKernel>};
    return table;
}

const ElementKind& KernelOutline::argumentKind() {
    static constexpr std::array attributes{
        attribute<&KernelOutline::argumentName_>("name"),
        attribute<&KernelOutline::argumentType_>("type"),
        attribute<&KernelOutline::addressQualifier_>("addressQualifier")};
    static constexpr ElementKind table{.attributes = attributes,
                                       .end = lmx60::call<&KernelOutline::addArgument>};
    return table;
}

KernelOutline::KernelOutline(const HdlReservedWords& reservedWords, Diagnostic& diagnostic)
    : reservedWords_(reservedWords), diagnostic_(diagnostic) {
    empty_.addBreakableCondition(BreakableCondition::Start, startCondition);
    empty_.addBreakableCondition(BreakableCondition::Stop, stopCondition);
}

std::vector<Kernel> KernelOutline::read(std::istream& stream, const std::string& documentName) {
    lmx60::readDocument(stream, documentName, "project", projectKind(), this);
    if (kernels_.size() == 1) {
        // Nobody shares with it, so that it can be added to without a copy.
        kernels_.front().setArguments(ArgumentList(std::move(*arguments_)));
    }
    return std::move(kernels_);
}

void KernelOutline::addArgument() {
    const std::string& port = argumentName_.value;
    const std::string source = reservedWords_.sourceName(port);
    const auto make = [&] { return Variable(source, port, argumentType_.value); };
    if (arguments_->findOrAdd(source, make).second) {
        ownBytes_ += bytesPerArgument + source.size() + port.size() + argumentType_.value.size();
    } else {
        remarkOnRepeat(source);
    }
    // An element that lacks one of them must not get the value of the one before.
    argumentName_ = {};
    argumentType_ = {};
}

void KernelOutline::remarkOnRepeat(std::string_view source) {
    for (const Variable& known : arguments_->items()) {
        // From the front: only repeats pay for it, and all of them together for so many looks.
        if (comparisonsLeft_ == 0) {
            return;
        }
        --comparisonsLeft_;
        if (known.sourceName != source) {
            continue;
        }
        const bool isRenamed = known.hardwareName != argumentName_.value;
        if (isRenamed || known.typeText != argumentType_.value) {
            diagnostic_.remark(0, Code::RepeatedArgument,
                               "argument " + inQuotes(source) + " of kernel " +
                                   inQuotes(kernelName_.value) + " is passed over: " +
                                   (isRenamed ? "hardware name " + inQuotes(argumentName_.value) +
                                                    " here, " + inQuotes(known.hardwareName)
                                              : "type " + inQuotes(argumentType_.value) +
                                                    " here, " + inQuotes(known.typeText)) +
                                   " before, and the first one counts");
        }
        return;
    }
}

void KernelOutline::addKernel() {
    carried_ += carriedBytes_;
    if (carried_ > mostCarried) {
        throw lmx60::Refusal("its kernels would take over more than " +
                             std::to_string(mostCarried >> 30U) +
                             " GiB of arguments from those before them");
    }
    carriedBytes_ += std::exchange(ownBytes_, 0);
    Kernel& kernel = kernels_.emplace_back(empty_);
    kernel.setName(kernelName_.value);
    kernel.setArguments(ArgumentList(arguments_, arguments_->items().size()));
    kernelName_ = {};
}

} // namespace consolidator
