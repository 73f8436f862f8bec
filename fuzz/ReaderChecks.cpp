#include "fuzz/ReaderChecks.h"

#include "consolidated/FileHandle.h"
#include "fuzz/ScratchFile.h"

#include <cstdio>
#include <set>
#include <string_view>

namespace consolidator::fuzz {

void requireUsable(const std::vector<Kernel>& kernels, bool mayHoldZeroBytes) {
    static const ScratchFile storage;
    ConsolidatedFile project;
    for (const Kernel& kernel : kernels) {
        requireUniqueLists(kernel);
        project.mergeKernel(kernel);

        const FileHandle file = openFile(storage.path(), "w+");
        const std::uint32_t written = kernel.write(file.get());
        require(std::ftell(file.get()) == static_cast<long>(written),
                "writing tells how many bytes went out");
        std::rewind(file.get());
        Kernel stored;
        require(stored.read(file.get()), "a kernel that was written can be read");
        require(std::ftell(file.get()) == static_cast<long>(written), "reading takes all bytes");
        require(mayHoldZeroBytes || same(stored, kernel), "a kernel is read as it was written");
    }
    const std::vector<Kernel> merged = project.kernels();
    std::set<std::string_view> names;
    for (const Kernel& kernel : merged) {
        require(names.insert(kernel.name()).second, "kernels are unique");
        requireUniqueLists(kernel);
    }
    for (const Kernel& kernel : kernels) {
        project.mergeKernel(kernel);
    }
    require(same(merged, project.kernels()), "merging the same kernels again changes nothing");
}

void requireSame(const Reading& first, const Reading& second) {
    require(first.succeeded == second.succeeded && first.threw == second.threw,
            "the same bytes lead to the same end");
    require(same(first.kernels, second.kernels), "the same bytes give the same kernels");
    require(first.stopped == second.stopped && first.remarks == second.remarks &&
                first.remarkCount == second.remarkCount,
            "the same bytes get the same remarks");
}

} // namespace consolidator::fuzz
