#include "model/HardwareVariable.h"

#include "model/BinaryForm.h"
#include "model/JsonText.h"

#include <ostream>
#include <span>
#include <utility>
#include <vector>

namespace consolidator {

HardwareVariable::HardwareVariable(std::string_view netName) : name(netName), valid(true) {}

void HardwareVariable::setLocation(std::uint32_t bit, std::uint32_t address, std::uint32_t offset) {
    locations.set(bit, {address, offset});
}

void HardwareVariable::writeJson(std::ostream& out) const {
    JsonBlock json(out);
    json.add("{ \"RTLName\" : ").addQuoted(name).add(", \"Logic Locations\" : [ ");
    {
        // In a block of its own: the list's last bracket is written when this is destroyed.
        JsonLocations entries(json, '[', ']');
        locations.forEachRun([&entries](std::span<const LogicLocation> run) { entries.add(run); });
    }
    json.add("] } ");
}

std::uint32_t HardwareVariable::write(std::FILE* stream) const {
    if (stream == nullptr) {
        return 0;
    }
    std::uint32_t written = writeText(stream, name);
    written += writeNumber(stream, locations.size());
    locations.forEachRun(
        [&](std::span<const LogicLocation> run) { written += writeLocations(stream, run); });
    return written;
}

HardwareVariable HardwareVariable::read(std::FILE* stream) {
    HardwareVariable variable;
    variable.valid = stream != nullptr && variable.readFields(stream);
    return variable;
}

bool HardwareVariable::skip(std::FILE* stream) {
    std::uint32_t count = 0;
    return skipText(stream) && readNumber(stream, count) &&
           skipLocations(stream, cappedLength(count));
}

bool HardwareVariable::readFields(std::FILE* stream) {
    std::uint32_t count = 0;
    if (!readText(stream, name) || !readNumber(stream, count)) {
        return false;
    }
    std::vector<LogicLocation> read;
    const bool isWhole = readLocations(stream, cappedLength(count), read);
    locations = LocationList(std::move(read));
    return isWhole;
}

} // namespace consolidator
