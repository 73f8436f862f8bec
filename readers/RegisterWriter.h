// Puts the bits that a logic-location file places into the registers of kernels.
#pragma once

#include "consolidated/Diagnostic.h"
#include "model/Kernel.h"
#include "readers/BitLine.h"
#include "readers/KnownNets.h"
#include "readers/LocationBudget.h"
#include "readers/LogicLocationObserver.h"
#include "readers/NetMatcher.h"
#include "readers/PlacedBits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace consolidator {

/// A line whose net may belong to a kernel.
struct NetLine {
    BitLine bit;                     ///< It has a net.
    std::uint64_t number = 0;        ///< Of the line.
    std::uint64_t bytesWithNets = 0; ///< Of the lines with a net, up to the end of this one.
};

/// How many lines have something in common, and the number of the first one.
struct LineTally {
    std::uint64_t count = 0;
    std::uint64_t first = 0;

    void note(std::uint64_t line) {
        first = count == 0 || line < first ? line : first;
        ++count;
    }
};

/// Finds the registers of nets, at once for those that came before, and sets the bits of lines in
/// them as far as the budget allows.
class RegisterWriter {
public:
    /// What it works with. All of it must outlive the writer.
    struct Surroundings {
        std::vector<Kernel>& kernels; ///< The kernels whose registers are set.

        /// The project that these are kernels of, if they lack registers which they have there.
        const std::vector<Kernel>* project;
        std::vector<bool>& lacksRegisters; ///< Per kernel, while it does.

        NetMatcher& matcher; ///< Of the project, or else of the kernels.
        LocationBudget& budget;
        Diagnostic& diagnostic;
        LineTally& unmatched;            ///< The lines whose net belongs to no kernel.
        LogicLocationObserver* observer; ///< May be null.
    };

    explicit RegisterWriter(const Surroundings& surroundings);

    /// Takes a line that is added together with others, which is quicker: by addWaiting() or before
    /// it. Its net must hold until then.
    void addLater(const NetLine& line) {
        waiting_[waitingCount_++] = line;
        if (waitingCount_ == mostWaiting) {
            addWaiting();
        }
    }

    /// Adds the lines that wait.
    void addWaiting();

    /// Adds a line at once. None may be waiting.
    void add(const NetLine& line);

    /// Pays so many bytes of lines with nets into the budget, all that were read up to now.
    void payFor(std::uint64_t bytesWithNets);

private:
    using Register = KnownNets::Register;

    static constexpr std::size_t mostWaiting = 32;

    Kernel& withRegisters(std::uint32_t owner);

    void addToOwners(const NetLine& line);
    void addToRegisters(const NetLine& line, std::span<const Register> registers);
    void set(Register where, const BitLine& bit);
    void setWatched(Register where, const NetLine& line);

    // Whether the bit may be added; each one remarks on it if not.
    bool mayHave(const NetLine& line);
    bool mayShare(const NetLine& line);
    bool mayLeaveEmpty(const NetLine& line, std::uint32_t emptyBits);

    void remarkOnSkipped(const NetLine& line, Code code, const std::string& reason);

    Surroundings with_;
    KnownNets knownNets_;
    std::uint64_t paidBytes_ = 0;
    std::optional<PlacedBits> placedBits_; ///< Only for an observer.

    std::array<NetLine, mostWaiting> waiting_;
    std::size_t waitingCount_ = 0;
};

} // namespace consolidator
