#include "tests/support/PlainLogicLocations.h"

#include <array>
#include <cstdint>
#include <sstream>

namespace consolidator::test {

namespace {

/// One bit of a net.
struct NetBit {
    std::string net; ///< With a leading "/"; empty if the line names none.
    std::uint32_t number = 0;
    std::uint32_t address = 0;
    std::uint32_t offset = 0;
};

/// Registers have fewer bits than this; lines with a larger number are skipped.
constexpr std::uint32_t bitLimit = 16777216;

/// Takes the net from what stands behind "Net=", and the bit from the net.
void setNet(NetBit& bit, const std::string& text) {
    bit.net.clear();
    bit.number = 0;
    if (text.empty()) {
        return;
    }
    bit.net = "/" + text;
    const std::size_t bracket = bit.net.rfind('[');
    if (bit.net.back() == ']' && bracket != std::string::npos) {
        std::istringstream index(bit.net.substr(bracket + 1));
        index >> bit.number;
        bit.net.erase(bracket);
    }
}

/// Reads what stands behind the word "Bit".
NetBit readNetBit(std::istream& fields) {
    NetBit bit;
    std::uint64_t position = 0;
    std::uint64_t address = 0;
    std::string word;
    std::uint32_t number = 0;
    fields >> std::dec >> position;
    fields >> std::hex >> address;
    fields >> std::dec >> bit.offset;
    fields >> word;
    fields >> number;
    bit.address = static_cast<std::uint32_t>(address & 0xFFFFFFFF);
    while (fields.good()) {
        std::string further;
        fields >> further;
        if (further.substr(0, 4) == "Net=") {
            setNet(bit, further.substr(4));
        }
    }
    return bit;
}

void addToKernel(Kernel& kernel, const NetBit& bit) {
    const std::string lastComponent = bit.net.substr(bit.net.rfind('/') + 1);
    for (const std::string& path : kernel.instancePaths()) {
        if (bit.net.find(path) == std::string::npos) {
            continue;
        }
        for (const Variable& argument : kernel.arguments()) {
            if (argument.hardwareName == lastComponent) {
                kernel.addHardwareLocation(bit.net, bit.number, bit.address, bit.offset);
            }
        }
        for (const Variable& variable : kernel.variables()) {
            if (variable.hardwareName == lastComponent) {
                kernel.addHardwareLocation(bit.net, bit.number, bit.address, bit.offset);
            }
        }
    }
}

bool handleLine(const std::string& line, std::vector<Kernel>& kernels) {
    if (line.substr(0, 1) == ";") {
        return true;
    }
    if (line.find("Revision") != std::string::npos) {
        return true;
    }
    std::istringstream fields(line);
    std::string first;
    fields >> first;
    if (first != "Bit") {
        return false;
    }
    const NetBit bit = readNetBit(fields);
    if (bit.net.empty() || bit.number >= bitLimit) {
        return true;
    }
    for (Kernel& kernel : kernels) {
        addToKernel(kernel, bit);
    }
    return true;
}

} // namespace

bool readPlainLogicLocations(const std::string& text, std::vector<Kernel>& kernels) {
    std::istringstream file(text);
    if (file.peek() == std::istringstream::traits_type::eof()) {
        return true;
    }
    while (!file.eof()) {
        std::array<char, 2047> line{};
        file.getline(line.data(), line.size());
        if (!handleLine(line.data(), kernels)) {
            return false;
        }
        file >> std::ws;
    }
    return true;
}

} // namespace consolidator::test
