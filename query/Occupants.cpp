#include "query/Occupants.h"

#include <algorithm>
#include <utility>

namespace consolidator {

namespace {

/// Gathers what one kernel has in the range.
class Gathering {
public:
    Gathering(const KernelView& kernel, const PlaceRange& range, std::vector<Occupant>& occupants)
        : kernel_(kernel), range_(range), occupants_(occupants) {}

    void addRegisters() {
        const std::vector<HardwareVariable>& registers = kernel_.kernel().hardwareVariables();
        for (std::size_t position = 0; position < registers.size(); ++position) {
            addRuns(registers[position].locations, [&] {
                return Occupant{&kernel_,
                                kernel_.instanceOf(position),
                                &registers[position],
                                kernel_.variablesIn(position),
                                {},
                                {}};
            });
        }
    }

    void addVariablesOwn() {
        forEachVariable(kernel_.kernel(), [&](const SourceVariable& variable) {
            const auto& instances = variable.variable->locations;
            for (std::uint32_t instance = 0; instance < instances.size(); ++instance) {
                const auto occupant = [&] {
                    return Occupant{&kernel_, instance, nullptr, {}, variable, {}};
                };
                addRuns(LocationList(instances[instance]), occupant);
            }
        });
    }

private:
    /// Who it is is asked for once, and only if anything lies there: most of a device does not.
    template <typename MakeOccupant>
    void addRuns(const LocationList& locations, MakeOccupant makeOccupant) {
        std::optional<Occupant> occupant;
        forEachBitRun(locations, [&](const BitRun& run) {
            if (const std::optional<BitRun> part = range_.partOf(run)) {
                if (!occupant) {
                    occupant = makeOccupant();
                }
                occupant->bits = *part;
                occupants_.push_back(*occupant);
            }
        });
    }

    const KernelView& kernel_;
    const PlaceRange& range_;
    std::vector<Occupant>& occupants_;
};

} // namespace

std::optional<BitRun> PlaceRange::partOf(const BitRun& run) const {
    if (!run.isLocated() || run.place.address < firstAddress || run.place.address > lastAddress) {
        return std::nullopt;
    }
    const std::uint32_t from = std::max(firstOffset, run.place.offset);
    const std::uint32_t to = std::min(lastOffset, run.lastOffset());
    if (from > to) {
        return std::nullopt;
    }
    const std::uint32_t first = run.first + (from - run.place.offset);
    return BitRun{first, first + (to - from), {run.place.address, from}};
}

std::vector<Occupant> occupantsOf(std::span<const KernelView> kernels, const PlaceRange& range) {
    std::vector<Occupant> occupants;
    for (const KernelView& kernel : kernels) {
        Gathering gathering(kernel, range, occupants);
        gathering.addRegisters();
        gathering.addVariablesOwn();
    }
    const auto place = [](const Occupant& occupant) {
        return std::pair(occupant.bits.place.address, occupant.bits.place.offset);
    };
    std::ranges::stable_sort(occupants, {}, place);
    return occupants;
}

} // namespace consolidator
