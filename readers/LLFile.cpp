#include "readers/LLFile.h"

#include "model/Words.h"

#include <algorithm>
#include <array>
#include <istream>
#include <optional>

namespace consolidator {

namespace {

constexpr std::string_view netPrefix = "Net=";
constexpr std::string_view headerWord = "Revision";

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// Whether the first word is "Bit", and stands where tools put it.
bool beginsWithBit(std::string_view line) {
    return line.starts_with("Bit ") || line.starts_with("Bit\t");
}

} // namespace

bool LLFile::parse() {
    if (!isOpen()) {
        return false;
    }
    matcher_.emplace(kernels_, longestLine);
    knownNets_.emplace(kernels_);
    const bool readToItsEnd = readLines();
    knownNets_.reset(); // they look into the kernels, which the project takes now
    matcher_.reset();
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
        if (!takeUsualLines()) {
            const std::string text(readLine(buffer));
            if (!stream_.bad() && !handleLine(text)) {
                return false;
            }
            if (stuck()) {
                return stopAtLine(lineNumber_, longestLine);
            }
        }
        stream_ >> std::ws;
    }
    return true;
}

bool LLFile::takeUsualLines() {
    const std::string_view block = ahead();
    const std::uint64_t firstLine = lineNumber_;
    std::size_t start = 0; // of the next line
    while (start < block.size()) {
        const std::size_t length = std::min(block.find('\n', start), block.size()) - start;
        const std::string_view line = block.substr(start, length);
        if (start + length == block.size() || length > longestLine) {
            break; // the line goes on in the next block, or is too long
        }
        if (!line.starts_with(';')) {
            if (!beginsWithBit(line)) {
                break;
            }
            if (contains(line, netPrefix) && !takeUsualLine(line)) {
                break;
            }
        }
        start += length;
        // The newline, and what else the stream would pass over before the next line.
        for (; start < block.size() && isSpace(block[start]); ++start) {
            lineNumber_ += block[start] == '\n' ? 1 : 0;
        }
    }
    skip(start, lineNumber_ - firstLine);
    return start > 0;
}

bool LLFile::takeUsualLine(std::string_view line) {
    if (contains(line, std::string_view("\0", 1))) {
        return false;
    }
    if (contains(line, headerWord)) {
        return true;
    }
    if (!bit_.scan(line)) {
        return false;
    }
    addToKernels(line.size());
    return true;
}

bool LLFile::handleLine(const std::string& text) {
    if (text.starts_with(';') || contains(text, headerWord)) {
        return true;
    }
    std::string_view words = text;
    const std::string_view first = takeWord(words);
    if (first != "Bit") {
        return stop(lineNumber_, "the line begins with " + quoted(first) + ", not with \"Bit\"");
    }
    if (!contains(text, netPrefix)) {
        return true;
    }
    const std::optional<BitLine> bit = BitLine::read(text);
    if (!bit) {
        diagnostic_.remark(lineNumber_, "the numbers of the line cannot be read");
        return true;
    }
    bit_ = *bit;
    addToKernels(text.size());
    return true;
}

void LLFile::addToKernels(std::size_t lineLength) {
    if (bit_.net.empty()) {
        return;
    }
    budget_.lineRead(lineLength);
    if (!matcher_->knowsName(bit_.net)) {
        noteStranger();
        return;
    }
    const auto registers = knownNets_->find(bit_.net);
    if (registers.empty()) {
        addToOwners();
    } else if (mayHave(bit_.number)) {
        addToRegisters(registers);
    }
}

void LLFile::addToOwners() {
    const auto owners = matcher_->owners(bit_.net, budget_.mostOwners());
    if (owners.empty()) {
        noteStranger();
        return;
    }
    if (!mayHave(bit_.number)) {
        return;
    }
    std::vector<KnownNets::Place> registers;
    for (const std::uint32_t owner : owners) {
        Kernel& kernel = kernels_[owner];
        const bool isFurther = !registers.empty();
        if (isFurther && !mayShare()) {
            return;
        }
        if (!mayLeaveEmpty(kernel.emptyBitsBefore(bit_.net, bit_.number))) {
            continue;
        }
        const std::size_t registersBefore = kernel.hardwareVariables().size();
        const std::size_t position =
            kernel.addHardwareLocation(bit_.net, bit_.number, bit_.address, bit_.offset);
        if (isFurther && kernel.hardwareVariables().size() > registersBefore) {
            budget_.shareRegister(bit_.net.size());
        }
        registers.push_back({owner, static_cast<std::uint32_t>(position)});
    }
    if (registers.size() == owners.size()) {
        knownNets_->add(bit_.net, registers);
    }
}

void LLFile::addToRegisters(std::span<const KnownNets::Place> registers) {
    bool isFurther = false;
    for (const auto& [owner, position] : registers) {
        Kernel& kernel = kernels_[owner];
        const HardwareVariable& variable = kernel.hardwareVariables()[position];
        if (isFurther && !mayShare()) {
            return;
        }
        if (!mayLeaveEmpty(variable.emptyBitsBefore(bit_.number))) {
            continue;
        }
        kernel.setHardwareLocation(position, bit_.number, bit_.address, bit_.offset);
        isFurther = true;
    }
}

bool LLFile::mayHave(std::uint32_t bitNumber) {
    if (bitNumber >= bitLimit) {
        remarkOnSkipped("registers of up to " + std::to_string(bitLimit) + " bits are kept");
        return false;
    }
    return true;
}

bool LLFile::mayShare() {
    if (!budget_.mayShare()) {
        remarkOnSkipped(
            "so many nets belong to several kernels that only the first kernels of this "
            "one get it");
        return false;
    }
    budget_.shareLocation();
    return true;
}

bool LLFile::mayLeaveEmpty(std::uint32_t emptyBits) {
    if (!budget_.takeEmptyBits(emptyBits)) {
        remarkOnSkipped("the registers of this file have too many bits that it does not name");
        return false;
    }
    return true;
}

void LLFile::noteStranger() {
    if (strangers_++ == 0) {
        firstStranger_ = lineNumber_;
    }
}

void LLFile::remarkOnSkipped(const std::string& reason) {
    diagnostic_.remark(lineNumber_, "bit " + std::to_string(bit_.number) + " of " +
                                        quoted(bit_.net) + " is skipped: " + reason);
}

} // namespace consolidator
