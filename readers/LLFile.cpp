#include "readers/LLFile.h"

#include <array>
#include <istream>
#include <locale>
#include <optional>
#include <sstream>

namespace consolidator {

namespace {

constexpr std::string_view netPrefix = "Net=";

} // namespace

bool LLFile::parse() {
    if (!isOpen()) {
        return false;
    }
    matcher_.emplace(kernels_, longestLine);
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
        budget_.lineRead(text.size());
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
    const auto owners = matcher_->owners(bit.net, budget_.mostOwners());
    if (owners.empty()) {
        if (strangers_++ == 0) {
            firstStranger_ = lineNumber_;
        }
        return;
    }
    if (bit.number >= bitLimit) {
        remarkOnSkipped(bit, "registers of up to " + std::to_string(bitLimit) + " bits are kept");
        return;
    }
    if (!addToKernel(kernels_[owners.front()], bit)) {
        return;
    }
    for (const std::uint32_t owner : owners.subspan(1)) {
        if (!budget_.mayShare()) {
            remarkOnSkipped(bit, "so many nets belong to several kernels that only the first "
                                 "kernels of this one get it");
            return;
        }
        if (!addToFurtherKernel(kernels_[owner], bit)) {
            return;
        }
    }
}

bool LLFile::addToKernel(Kernel& kernel, const Bit& bit) {
    // The first bit, which is the only one of most registers, has none before it.
    if (bit.number > 0 && !budget_.takeEmptyBits(kernel.emptyBitsBefore(bit.net, bit.number))) {
        remarkOnSkipped(bit, "the registers of this file have too many bits that it does not name");
        return false;
    }
    kernel.addHardwareLocation(bit.net, bit.number, bit.address, bit.offset);
    return true;
}

bool LLFile::addToFurtherKernel(Kernel& kernel, const Bit& bit) {
    const std::size_t registersBefore = kernel.hardwareVariables().size();
    if (!addToKernel(kernel, bit)) {
        return false;
    }
    budget_.shareLocation();
    if (kernel.hardwareVariables().size() > registersBefore) {
        budget_.shareRegister(bit.net.size());
    }
    return true;
}

void LLFile::remarkOnSkipped(const Bit& bit, const std::string& reason) {
    diagnostic_.remark(lineNumber_, "bit " + std::to_string(bit.number) + " of " + quoted(bit.net) +
                                        " is skipped: " + reason);
}

} // namespace consolidator
