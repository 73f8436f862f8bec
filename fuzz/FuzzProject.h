// Kernels for the readers that need a project, as text in front of their input.
#pragma once

#include "model/Kernel.h"

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::fuzz {

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

} // namespace consolidator::fuzz
