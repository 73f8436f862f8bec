// Finds among the nets of logic-location files those that almost belong to a kernel.
#pragma once

#include "inspect/check/Coverage.h"
#include "inspect/check/PathsInNet.h"
#include "query/InstanceFinder.h"
#include "shared/TextHash.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace consolidator::inspect {

/// Finds for each missing name of a coverage the net that a user may have meant. That is, the best
/// first:
///
/// - one in an instance of the kernel whose last component is the name,
/// - one there whose last component, or what follows a "." or "\" in it, is almost the name,
/// - one elsewhere that has the name, the nearer to the kernel's first instance path the better,
/// - one elsewhere that has almost the name.
///
/// And for the first instance without a net of each kernel: a net with the last component of one
/// that the kernel has, under none of the kernel's instance paths, the nearer to this one the
/// better.
///
/// What a net costs is bounded: only the first kernels that miss a name, and the first of the names
/// without any net, are looked after.
class NearestNets {
public:
    /// Fills in the `nearest` of the coverage, which must outlive this object and stay where it is.
    explicit NearestNets(std::vector<KernelCoverage>& coverage);

    /// Whether there is anything to look for.
    bool anyMissing() const { return !byName_.empty() || !withoutNet_.empty(); }

    /// Looks at a net that a line of a file names, without its leading "/" and bit index.
    void look(std::string_view net, const std::string& file, std::uint64_t line);

private:
    static constexpr std::size_t mostOfAName = 32;
    static constexpr std::size_t mostAlike = 32;
    static constexpr std::size_t mostInstances = 32;

    /// A name that a kernel misses, with the best net so far.
    struct Wanted {
        MissingName* missing;
        const Kernel* kernel;
        std::size_t score = 0; ///< Of the best net.
    };

    using Names = std::unordered_set<std::string_view, TextHash>;

    /// One that names alike are looked for, too.
    struct Alike {
        Wanted* wanted;     ///< The first of its name.
        const Names* names; ///< The kernel's hardware names: their nets are meant for them.
    };

    /// An instance without a net.
    struct InstanceWithoutNet {
        KernelCoverage* coverage;
        std::string_view path;
        std::string_view name;    ///< The last component of the kernel's first net.
        InstanceFinder instances; ///< Of the kernel.
        std::size_t score = 0;
    };

    /// A net of the file.
    struct Net {
        std::string_view name; ///< Without a leading "/".
        std::string_view lastComponent;
        const std::string& file;
        std::uint64_t line;
    };

    void addInstanceWithoutNet(KernelCoverage& kernel);
    void addWanted(MissingName& missing, const Kernel& kernel);
    void offer(const Net& net);
    void offerSameName(const Net& net, Wanted& wanted);
    static void offerToInstance(const Net& net, InstanceWithoutNet& instance);
    void offerAlike(const Net& net, const Alike& alike);
    const Names* namesOf(const Kernel& kernel);

    std::unordered_map<std::string_view, std::vector<Wanted>, TextHash> byName_;
    std::unordered_map<const Kernel*, Names> names_;
    std::vector<Alike> alike_;
    std::deque<InstanceWithoutNet> withoutNet_;
    PathsInNet paths_; ///< Of the kernels that miss names.
    std::string last_; ///< The net that was looked at last: a bus has a line for each of its bits.
};

} // namespace consolidator::inspect
