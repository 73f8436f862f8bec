// What shows when all inputs have been read: kernels that inputs do not agree on, and names that no
// net belongs to.
#pragma once

#include "inspect/check/Coverage.h"
#include "inspect/check/Findings.h"
#include "inspect/check/InputCheck.h"
#include "inspect/text/Progress.h"

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::inspect {

/// Looks at the kernels of the database after the inputs, all of which must outlive this object.
class ProjectCheck {
public:
    ProjectCheck(const ConsolidatedFile& database, const InputCheck& inputs, Findings& findings,
                 Progress& progress)
        : database_(database), inputs_(inputs), findings_(findings), progress_(progress) {}

    /// To be called once.
    void run();

    /// How many kernels come from files of another kind than they were given as, and are none.
    std::size_t kernelsOfWrongKind() const { return kernelsOfWrongKind_; }

    /// The coverage of each other kernel, with the nearest nets.
    const std::vector<KernelCoverage>& coverage() const { return coverage_; }

private:
    bool isOfWrongKind(std::string_view kernel) const;
    void reportKernelsOfOneInput();
    void reportOneInputOnly(const Kernel& kernel, const InputCheck::Input& input);
    void reportWithoutInstance(const Kernel& kernel);
    std::string nearestKernel(const Kernel& kernel);
    void readAgain();
    void reportCoverage(const KernelCoverage& kernel);
    bool reportOtherPath(const KernelCoverage& kernel);
    bool reportOtherName(const KernelCoverage& kernel);
    void reportInstances(const KernelCoverage& kernel);
    void reportInstancesWithoutNet(const KernelCoverage& kernel);
    std::string hierarchyOf(const Kernel& kernel) const;
    void reportNothingLocated(const KernelCoverage& kernel);

    const ConsolidatedFile& database_;
    const InputCheck& inputs_;
    Findings& findings_;
    Progress& progress_;
    std::vector<KernelCoverage> coverage_;
    std::size_t kernelsOfWrongKind_ = 0;
    std::size_t compared_ = 0; ///< Kernels whose name was compared with all others.
};

} // namespace consolidator::inspect
