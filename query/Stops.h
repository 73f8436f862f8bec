// The source lines of a database at which a kernel can be stopped.
//
//     for (const Stop& stop : stopsIn(database.kernels(), "scale_rows.cpp")) {
//         stop.line();                    // 14
//         stop.conditionFor(1);           // "== 1'b1 top/region_0/scale_rows_2/U0/fsm_state2"
//     }
#pragma once

#include "model/Kernel.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator {

/// A source line at which a kernel can be stopped. Both records are the kernel list's own.
struct Stop {
    const Kernel* kernel = nullptr;
    const BreakableCondition* condition = nullptr; ///< Of the kind FileLine.

    /// The source file, as high-level synthesis named it, and the line, as it came from there.
    const std::string& file() const { return condition->file; }
    std::uint32_t line() const { return condition->line; }

    /// The condition for one instance: that of the function below.
    std::string conditionFor(std::size_t instance) const;
};

/// What a condition of a kernel, also one of its start or its end, says for one instance, a
/// position in the kernel's instancePaths(): each "$i" in its text gives way to conditionPath().
/// Throws std::out_of_range if there is no such instance.
std::string conditionFor(const Kernel& kernel, const BreakableCondition& condition,
                         std::size_t instance);

/// The path that "$i" stands for in the conditions of a kernel: that of the instance with what JSON
/// puts behind it ("/U0" or "/inst"), which is where the kernel's own registers are. Throws
/// std::out_of_range if there is no such instance.
std::string conditionPath(const Kernel& kernel, std::size_t instance);

/// The stops in each file that has this path or whose path ends in it, behind a "/"; by file, and
/// in it by line, then in the order of the kernels. The kernels must outlive them and stay as they
/// are.
std::vector<Stop> stopsIn(std::span<const Kernel> kernels, std::string_view file);

/// All stops, in the order of the kernels, under the same terms.
std::vector<Stop> allStops(std::span<const Kernel> kernels);

} // namespace consolidator
