#include "readers/LLFile.h"

#include <algorithm>
#include <array>
#include <istream>
#include <locale>
#include <optional>
#include <sstream>

namespace consolidator {

namespace {

constexpr std::string_view netPrefix = "Net=";

/// Whether the net's last component is the hardware name of an argument or variable of the kernel
/// and one of the kernel's instance paths occurs in the net.
bool owns(const Kernel& kernel, std::string_view net) {
    const std::string_view component = net.substr(net.rfind('/') + 1);
    const auto isNamedSo = [component](const Variable& variable) {
        return variable.hardwareName == component;
    };
    return (std::ranges::any_of(kernel.arguments(), isNamedSo) ||
            std::ranges::any_of(kernel.variables(), isNamedSo)) &&
           std::ranges::any_of(kernel.instancePaths(), [net](const std::string& path) {
               return net.find(path) != std::string_view::npos;
           });
}

} // namespace

bool LLFile::parse() {
    if (!isOpen()) {
        return false;
    }
    const bool readToItsEnd = readLines();
    if (strangers_ > 0) {
        diagnostic_.remark(firstStranger_, "the first of " + std::to_string(strangers_) +
                                               " lines whose net belongs to no kernel");
    }
    return readToItsEnd;
}

bool LLFile::readLines() {
    stream_.peek(); // an empty file is at its end before a line is read
    std::array<char, longestLine + 1> buffer{};
    while (!stream_.eof()) {
        lineNumber_ = line();
        const std::string text(readLine(buffer));
        if (!stream_.bad() && !handleLine(text)) {
            return false;
        }
        if (stuck()) {
            return stopAtLine(lineNumber_, longestLine);
        }
        stream_ >> std::ws;
    }
    return true;
}

bool LLFile::handleLine(const std::string& text) {
    if (text.starts_with(';') || text.find("Revision") != std::string::npos) {
        return true;
    }
    std::istringstream fields(text);
    fields.imbue(std::locale::classic());
    std::string first;
    fields >> first;
    if (first != "Bit") {
        return stop(lineNumber_, "the line begins with " + quoted(first) + ", not with \"Bit\"");
    }
    const std::optional<Bit> bit = readBit(fields);
    if (!bit) {
        diagnostic_.remark(lineNumber_, "the numbers of the line cannot be read");
    } else if (!bit->net.empty()) {
        addToKernels(*bit);
    }
    return true;
}

std::optional<LLFile::Bit> LLFile::readBit(std::istream& fields) {
    std::uint64_t position = 0;
    std::uint64_t address = 0;
    std::string place;
    std::uint32_t number = 0;
    Bit bit;
    fields >> std::dec >> position >> std::hex >> address >> std::dec >> bit.offset >> place >>
        number;
    if (fields.fail()) {
        return std::nullopt;
    }
    bit.address = static_cast<std::uint32_t>(address);
    std::string net;
    for (std::string word; fields >> word;) {
        if (word.starts_with(netPrefix)) {
            net = word.substr(netPrefix.size());
        }
    }
    if (!net.empty()) {
        bit.net += '/';
        bit.net += net;
        cutBitIndex(bit);
    }
    return bit;
}

void LLFile::cutBitIndex(Bit& bit) {
    const std::size_t bracket = bit.net.rfind('[');
    if (bit.net.ends_with(']') && bracket != std::string::npos) {
        // A number that cannot be read is 0, one that is too large is the largest.
        std::istringstream index(bit.net.substr(bracket + 1));
        index.imbue(std::locale::classic());
        index >> bit.number;
        bit.net.resize(bracket);
    }
}

void LLFile::addToKernels(const Bit& bit) {
    // Setting the same location twice changes nothing, so it does not matter how many paths and
    // names of a kernel match.
    bool owned = false;
    for (Kernel& kernel : kernels_) {
        if (!owns(kernel, bit.net)) {
            continue;
        }
        owned = true;
        if (bit.number < bitLimit) {
            kernel.addHardwareLocation(bit.net, bit.number, bit.address, bit.offset);
        } else {
            diagnostic_.remark(lineNumber_, "bit " + std::to_string(bit.number) + " of " +
                                                quoted(bit.net) +
                                                " is skipped: registers of up to " +
                                                std::to_string(bitLimit) + " bits are kept");
        }
    }
    if (!owned && strangers_++ == 0) {
        firstStranger_ = lineNumber_;
    }
}

} // namespace consolidator
