#include "model/HardwareVariable.h"

#include "model/BinaryForm.h"
#include "model/JsonText.h"

#include <ostream>

namespace consolidator {

HardwareVariable::HardwareVariable(std::string_view netName) : name(netName), valid(true) {}

void HardwareVariable::setLocation(std::uint32_t bit, std::uint32_t address, std::uint32_t offset) {
    if (bit >= locations.size()) {
        locations.resize(std::size_t{bit} + 1);
    }
    locations[bit] = {address, offset};
}

void HardwareVariable::writeJson(std::ostream& out) const {
    out << "{ \"RTLName\" : ";
    writeQuoted(out, name);
    out << ", \"Logic Locations\" : [ ";
    writeJsonLocations(out, locations, '[', ']');
    out << "] } ";
}

std::uint32_t HardwareVariable::write(std::FILE* stream) const {
    if (stream == nullptr) {
        return 0;
    }
    return writeText(stream, name) + writeLocations(stream, locations);
}

HardwareVariable HardwareVariable::read(std::FILE* stream) {
    HardwareVariable variable;
    variable.valid = stream != nullptr && variable.readFields(stream);
    return variable;
}

bool HardwareVariable::readFields(std::FILE* stream) {
    std::uint32_t count = 0;
    return readText(stream, name) && readNumber(stream, count) &&
           readLocations(stream, cappedLength(count), locations);
}

} // namespace consolidator
