#include "model/KernelIndex.h"

#include <string>
#include <utility>

namespace consolidator {

KernelIndex KernelIndex::ofInstancePaths(const std::vector<Kernel>& kernels, std::size_t longest) {
    std::vector<PathOwners::Entry> entries;
    for (std::uint32_t i = 0; i < kernels.size(); ++i) {
        for (const std::string& path : kernels[i].instancePaths()) {
            // A longer one cannot occur in any of the texts that are going to be searched.
            if (path.size() <= longest) {
                entries.emplace_back(path, i);
            }
        }
    }
    return KernelIndex(std::move(entries));
}

} // namespace consolidator
