#include "tests/support/PlainKernelDescription.h"

#include "readers/HdlReservedWords.h"

#include <string>

namespace consolidator::test {

std::vector<Kernel> plainKernelsOf(const Mekto::Project& project) {
    const HdlReservedWords words;
    Kernel kernel;
    std::vector<Kernel> kernels;
    for (const Mekto::Platform& platform : project.platform) {
        for (const Mekto::Device& device : platform.device) {
            for (const Mekto::Core& core : device.core) {
                for (const Mekto::Kernel& element : core.kernel) {
                    kernel.setName(element.name.value);
                    for (const Mekto::Arg& arg : element.arg) {
                        const std::string& port = arg.name.value;
                        kernel.addArgument(words.sourceName(port), port, arg.type.value);
                    }
                    kernel.addBreakableCondition(0, "== $i/kc_start 1'b1");
                    kernel.addBreakableCondition(1, "== $i/kc_done 1'b1");
                    kernels.push_back(kernel);
                }
            }
        }
    }
    return kernels;
}

} // namespace consolidator::test
