// Is told what a merge of kernels does not take over: the first description wins, and only the
// merge itself knows which one came too late.
#pragma once

namespace consolidator {

class Kernel;
struct HardwareVariable;

/// For programs that explain what became of an input. The consolidator has none: whatever an input
/// tells too late is dropped in silence, and nothing is compared for it.
class MergeObserver {
public:
    MergeObserver() = default;
    virtual ~MergeObserver() = default;
    MergeObserver(const MergeObserver&) = delete;
    MergeObserver& operator=(const MergeObserver&) = delete;

    /// The next of an input's kernels, in their order, is going to be merged.
    virtual void beforeMerging(const Kernel& coming) = 0;

    /// `kernel` has a register of this name already, `known`, which stays; `ignored` has other
    /// locations and is dropped. All three hold until this returns.
    virtual void ignoredLocations(const Kernel& kernel, const HardwareVariable& known,
                                  const HardwareVariable& ignored) = 0;
};

} // namespace consolidator
