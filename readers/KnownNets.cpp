#include "readers/KnownNets.h"

#include "model/KeyedHash.h"

#include <utility>

namespace consolidator {

namespace {

constexpr std::size_t slotsAtFirst = 1024;

} // namespace

KnownNets::KnownNets(const std::vector<Kernel>& kernels)
    : kernels_(kernels), slots_(slotsAtFirst, none) {}

std::span<const KnownNets::Place> KnownNets::find(std::string_view net) {
    const std::uint32_t found = slotOf(net);
    if (found == none) {
        return {};
    }
    return std::span(places_).subspan(nets_[found].first, nets_[found].count);
}

void KnownNets::add(std::string_view net, std::span<const Place> registers) {
    if (2 * (nets_.size() + 1) > slots_.size()) {
        grow();
    }
    slotOf(net) = static_cast<std::uint32_t>(nets_.size());
    nets_.push_back(
        {static_cast<std::uint32_t>(places_.size()), static_cast<std::uint32_t>(registers.size())});
    places_.insert(places_.end(), registers.begin(), registers.end());
}

std::uint32_t& KnownNets::slotOf(std::string_view net) {
    const std::size_t mask = slots_.size() - 1;
    std::size_t place = static_cast<std::size_t>(keyHash(net)) & mask;
    while (slots_[place] != none && nameOf(nets_[slots_[place]]) != net) {
        place = (place + 1) & mask;
    }
    return slots_[place];
}

std::string_view KnownNets::nameOf(const Run& net) const {
    const Place& place = places_[net.first];
    return kernels_[place.kernel].hardwareVariables()[place.position].name;
}

void KnownNets::grow() {
    slots_.assign(2 * slots_.size(), none);
    for (std::uint32_t i = 0; i < nets_.size(); ++i) {
        slotOf(nameOf(nets_[i])) = i;
    }
}

} // namespace consolidator
