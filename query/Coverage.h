// How much of a kernel's arguments and variables is known: which of them have a place in the device
// for all of their registers' bits, for some, or for none; each in each instance.
//
//     const Coverage coverage(view);
//     coverage.of(variable).state();               // Located::InPart: a bit of 8 is missing
//     coverage.of(variable).instances[1].located;  // 7, in the second instance
//     coverage.instances()[1].inPart;              // 1 variable is in part located there
#pragma once

#include "query/KernelView.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace consolidator {

enum class Located : std::uint8_t {
    Whole,   ///< Each bit has a place.
    InPart,  ///< Some bits have one.
    Missing, ///< No bit has one: there is no register, or only one whose bits were never seen.
};

/// "located", "in part" or "missing".
std::string_view label(Located state);

/// So many bits of so many have a place.
struct BitCoverage {
    std::uint64_t located = 0;
    std::uint64_t total = 0; ///< The width of the registers, not of a type in the source.

    Located state() const {
        return located == 0 ? Located::Missing
                            : (located == total ? Located::Whole : Located::InPart);
    }

    bool operator==(const BitCoverage&) const = default;
};

/// The coverage of one argument or variable.
struct VariableCoverage {
    SourceVariable variable;

    /// For each instance of the kernel, by its position in instancePaths(), the bits of all
    /// registers there that hold the variable. Those of a database made by hand that stand with the
    /// variable itself count too, as far as there are instances for them.
    std::vector<BitCoverage> instances;

    /// The bits of registers that lie in no instance, which no run of the consolidator leaves
    /// behind.
    BitCoverage elsewhere;

    /// Whole if it is in every instance, Missing if it is in every one. Registers that lie in no
    /// instance count as one more, if there are any. Without both it is Missing.
    Located state() const;
};

/// How many arguments and variables are in which state.
struct LocatedCount {
    std::size_t whole = 0;
    std::size_t inPart = 0;
    std::size_t missing = 0;

    std::size_t total() const { return whole + inPart + missing; }
    void add(Located state);

    bool operator==(const LocatedCount&) const = default;
};

/// Answers for one kernel. It keeps nothing: each answer counts bits anew, in time to the bits that
/// the registers of the name have or claim to have.
class Coverage {
public:
    /// The view, and its kernel, must outlive this object and the answers.
    explicit Coverage(const KernelView& view) : view_(&view) {}

    /// Of an argument or variable of the kernel, as KernelView and forEachVariable() give them.
    VariableCoverage of(const SourceVariable& variable) const;

    /// Of the register at this position in the kernel's hardwareVariables(), which must be one of
    /// them.
    BitCoverage ofRegister(std::size_t position) const;

    /// How many of the kernel's arguments are in which VariableCoverage::state(), and of its
    /// variables.
    LocatedCount arguments() const;
    LocatedCount variables() const;

    /// For each instance, by its position in instancePaths(), how many arguments and variables are
    /// in which state there.
    std::vector<LocatedCount> instances() const;

private:
    LocatedCount countOf(std::span<const Variable> variables, bool areArguments) const;

    const KernelView* view_;
};

} // namespace consolidator
