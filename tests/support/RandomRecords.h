// Texts, kernels and whole databases by chance, for properties that hold whatever a database says.
//
//     RandomRecords random(seed);
//     directory.write("db", random.database());
#pragma once

#include "tests/support/KnownKernels.h"
#include "tests/support/RandomSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace consolidator::test {

/// The same seed gives the same records everywhere. What the JSON form derives from other fields
/// (bit widths, path suffixes) has its default.
class RandomRecords {
public:
    enum class Texts {
        Any,  ///< All bytes but zero.
        Clean ///< UTF-8 that JSON can hold without escapes.
    };

    explicit RandomRecords(std::uint32_t seed, Texts texts = Texts::Any)
        : random_(seed), texts_(texts) {}

    /// Often empty, sometimes long, and odd in many ways.
    std::string text();

    /// One of a few, so that two of them are often equal.
    std::string name();

    /// The text of a condition: infix, prefix, always true, half of one, or any text.
    std::string conditionText();

    KnownCondition condition();
    KnownVariable variable();

    /// The same with locations per instance, as only a database has them.
    KnownVariable locatedVariable();

    /// With gaps, and sometimes without any bit.
    KnownRegister hardwareRegister();

    /// A kernel with all lists, which hold duplicates; variables have no locations.
    KnownKernel kernel();

    /// The same with located variables.
    KnownKernel locatedKernel();

    /// A few kernels, sometimes of equal names.
    std::vector<KnownKernel> kernels();

    /// A database's bytes: sections of all types in any order and number, none of them damaged.
    /// Sections of unknown type are among them.
    std::string database();

private:
    std::string anyText();
    std::string cleanText();
    std::vector<KnownPlace> places();
    std::string section(std::uint32_t type);

    RandomSource random_;
    Texts texts_;
};

} // namespace consolidator::test
