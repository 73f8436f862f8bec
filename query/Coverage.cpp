#include "query/Coverage.h"

#include "query/Bits.h"

#include <algorithm>
#include <optional>
#include <span>

namespace consolidator {

namespace {

void addTo(BitCoverage& sum, const BitCoverage& bits) {
    sum.located += bits.located;
    sum.total += bits.total;
}

} // namespace

std::string_view label(Located state) {
    switch (state) {
    case Located::Whole:
        return "located";
    case Located::InPart:
        return "in part";
    case Located::Missing:
        break;
    }
    return "missing";
}

Located VariableCoverage::state() const {
    LocatedCount counts;
    for (const BitCoverage& bits : instances) {
        counts.add(bits.state());
    }
    if (elsewhere.total > 0) {
        counts.add(elsewhere.state());
    }
    if (counts.missing == counts.total()) {
        return Located::Missing;
    }
    return counts.whole == counts.total() ? Located::Whole : Located::InPart;
}

void LocatedCount::add(Located state) {
    ++(state == Located::Whole ? whole : state == Located::InPart ? inPart : missing);
}

BitCoverage Coverage::ofRegister(std::size_t position) const {
    const LocationList& locations = view_->kernel().hardwareVariables()[position].locations;
    return {locatedBits(locations), locations.size()};
}

VariableCoverage Coverage::of(const SourceVariable& variable) const {
    VariableCoverage result{variable, {}, {}};
    result.instances.resize(view_->kernel().instancePaths().size());
    for (const std::uint32_t position : view_->registersOf(variable.variable->hardwareName)) {
        const std::optional<std::uint32_t> instance = view_->instanceOf(std::size_t{position});
        addTo(instance ? result.instances[*instance] : result.elsewhere, ofRegister(position));
    }
    const InstanceLocations& own = variable.variable->locations;
    const std::size_t both = std::min(own.size(), result.instances.size());
    for (std::size_t instance = 0; instance < both; ++instance) {
        const auto missing = std::ranges::count(own[instance], notLocated);
        const std::uint64_t total = own[instance].size();
        addTo(result.instances[instance], {total - static_cast<std::uint64_t>(missing), total});
    }
    return result;
}

LocatedCount Coverage::countOf(std::span<const Variable> variables, bool areArguments) const {
    LocatedCount count;
    for (const Variable& variable : variables) {
        count.add(of({&variable, areArguments}).state());
    }
    return count;
}

LocatedCount Coverage::arguments() const {
    return countOf(view_->kernel().arguments(), true);
}

LocatedCount Coverage::variables() const {
    return countOf(view_->kernel().variables(), false);
}

std::vector<LocatedCount> Coverage::instances() const {
    std::vector<LocatedCount> result(view_->kernel().instancePaths().size());
    forEachVariable(view_->kernel(), [&](const SourceVariable& variable) {
        const VariableCoverage coverage = of(variable);
        for (std::size_t instance = 0; instance < result.size(); ++instance) {
            result[instance].add(coverage.instances[instance].state());
        }
    });
    return result;
}

} // namespace consolidator
