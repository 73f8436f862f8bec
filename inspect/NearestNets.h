// Looks through logic-location files for nets that almost belong to a kernel.
#pragma once

#include "inspect/Coverage.h"
#include "inspect/InstanceFinder.h"
#include "inspect/Progress.h"
#include "model/KeyedHash.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace consolidator::inspect {

/// Finds for the first instance without a net of each kernel the net with the same last component
/// as another of the kernel's nets that lies under none of its instance paths, the nearer to this
/// one the better. Finds for each missing name of a coverage the net that a user may have meant:
/// one with the same last component under a path that is not the kernel's, the nearer to its first
/// instance path the better; or, if there is none, one whose last component is almost the name,
/// rather in an instance of the kernel than elsewhere.
///
/// It costs one more pass over the file, for the inspector alone. What a net costs is bounded: only
/// the first kernels that miss a name, and the first of the names without any net, are looked
/// after.
class NearestNets {
public:
    /// Fills in the `nearest` of the coverage, which must outlive this object and stay where it is.
    explicit NearestNets(std::vector<KernelCoverage>& coverage);

    /// Whether there is anything to look for.
    bool anyMissing() const { return !byName_.empty() || !bare_.empty(); }

    /// Looks through one file, of which every line can be read, as LLFile has found.
    void read(const std::string& path, Progress& progress);

private:
    static constexpr std::size_t mostOfAName = 32;
    static constexpr std::size_t mostAlike = 32;
    static constexpr std::size_t mostPaths = 4;
    static constexpr std::size_t mostBare = 32;

    /// A name that a kernel misses, with the best net so far.
    struct Wanted {
        MissingName* missing;
        const Kernel* kernel;
        std::size_t score = 0; ///< Of the best net: bytes of the path, or less for a name alike.
    };

    /// An instance without a net.
    struct Bare {
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

    struct Hash {
        std::size_t operator()(std::string_view text) const { return keyHash(text); }
    };

    void addBare(KernelCoverage& kernel);
    void addWanted(MissingName& missing, const Kernel& kernel);
    void offer(const Net& net);
    static void offerSameName(const Net& net, Wanted& wanted);
    static void offerToBare(const Net& net, Bare& bare);
    static void offerAlike(const Net& net, Wanted& wanted);
    static bool isIn(const Kernel& kernel, std::string_view net);

    std::unordered_map<std::string_view, std::vector<Wanted>, Hash> byName_;
    std::vector<Wanted*> alike_; ///< The first of each name.
    std::deque<Bare> bare_;
};

/// The net that a line of a logic-location file names, without its bit index; empty if none.
std::string_view netOfLine(std::string_view line);

} // namespace consolidator::inspect
