#include "model/Variable.h"

#include "model/BinaryForm.h"
#include "model/JsonText.h"

#include <ostream>

namespace consolidator {

Variable::Variable(std::string_view source, std::string_view hardware, std::string_view type)
    : sourceName(source), hardwareName(hardware), typeText(type), valid(true) {}

std::uint32_t Variable::bitWidth() const {
    // The order matters: a pointer to char is a pointer.
    if (typeText.find('*') != std::string::npos) {
        return 64;
    }
    if (typeText.find("char") != std::string::npos) {
        return 8;
    }
    return 32;
}

void Variable::writeJson(std::ostream& out) const {
    JsonBlock json(out);
    json.add("[ ");
    for (const std::string* text : {&sourceName, &hardwareName, &typeText}) {
        json.addQuoted(*text).add(", ");
    }
    json.add(bitWidth());
    if (!locations.empty()) {
        json.add(", [ ");
        for (std::size_t instance = 0; instance < locations.size(); ++instance) {
            json.add(instance == 0 ? "" : ", ").add("{ \"Instance\" : ");
            json.add(static_cast<std::uint32_t>(instance)).add(", \"Bits\" : [");
            JsonLocations(json, '{', '}').add(locations[instance]);
            json.add("]}");
        }
        json.add("]");
    }
    json.add("]");
}

std::uint32_t Variable::write(std::FILE* stream) const {
    if (stream == nullptr) {
        return 0;
    }
    std::uint32_t written = writeText(stream, sourceName);
    written += writeText(stream, hardwareName);
    written += writeText(stream, typeText);
    written += writeNumber(stream, static_cast<std::uint32_t>(locations.size()));
    for (const auto& bits : locations) {
        written += writeNumber(stream, static_cast<std::uint32_t>(bits.size()));
        written += writeLocations(stream, bits);
    }
    return written;
}

Variable Variable::read(std::FILE* stream) {
    Variable variable;
    variable.valid = stream != nullptr && variable.readFields(stream);
    return variable;
}

bool Variable::skip(std::FILE* stream) {
    const auto skipInstance = [stream] {
        std::uint32_t count = 0;
        return readNumber(stream, count) && skipLocations(stream, count);
    };
    return skipText(stream) && skipText(stream) && skipText(stream) &&
           readList(stream, skipInstance);
}

bool Variable::readFields(std::FILE* stream) {
    std::uint32_t instances = 0;
    if (!readText(stream, sourceName) || !readText(stream, hardwareName) ||
        !readText(stream, typeText) || !readNumber(stream, instances)) {
        return false;
    }
    for (std::uint32_t instance = 0; instance < instances; ++instance) {
        std::uint32_t count = 0;
        if (!readNumber(stream, count)) {
            return false;
        }
        if (!readLocations(stream, count, locations.addInstance())) {
            return false;
        }
    }
    return true;
}

} // namespace consolidator
