#include "inspect/check/Coverage.h"

#include "query/KernelView.h"

namespace consolidator::inspect {

namespace {

KernelCoverage::Count countOf(const KernelView& nets, const std::vector<Variable>& variables,
                              bool areArguments, std::vector<MissingName>& missing) {
    KernelCoverage::Count count;
    for (const Variable& variable : variables) {
        ++count.total;
        if (nets.registersOf(variable.hardwareName).empty()) {
            missing.push_back({&variable, areArguments, std::nullopt});
        } else {
            ++count.located;
        }
    }
    return count;
}

} // namespace

std::vector<KernelCoverage> coverageOf(const std::vector<Kernel>& kernels) {
    std::vector<KernelCoverage> result;
    for (const Kernel& kernel : kernels) {
        const KernelView nets(kernel);
        KernelCoverage coverage{&kernel, {}, {}, {}, {}, std::nullopt};
        coverage.arguments = countOf(nets, kernel.arguments(), true, coverage.missing);
        coverage.variables = countOf(nets, kernel.variables(), false, coverage.missing);
        coverage.instances = instanceFaultsOf(nets);
        result.push_back(std::move(coverage));
    }
    return result;
}

} // namespace consolidator::inspect
