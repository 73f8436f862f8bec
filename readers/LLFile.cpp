#include "readers/LLFile.h"

#include "shared/Prefetch.h"
#include "shared/TextHash.h"
#include "shared/Words.h"

#include <algorithm>
#include <array>
#include <istream>
#include <optional>
#include <unordered_set>

namespace consolidator {

namespace {

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

constexpr char comment = ';';

/// Whether the first word is "Bit", and stands where tools put it.
bool beginsWithBit(std::string_view line) {
    return line.starts_with("Bit ") || line.starts_with("Bit\t");
}

/// How many of the lines, which end at these positions, are before the first that is too long or
/// begins in another way than that, or a comment, or an empty line behind another one.
std::size_t countUsualLines(std::string_view text, std::span<const std::uint32_t> ends) {
    std::size_t start = 0;
    for (std::size_t line = 0; line < ends.size(); ++line) {
        const std::string_view words = text.substr(start, ends[line] - start);
        const bool isUsual =
            beginsWithBit(words) || words.starts_with(comment) || (words.empty() && line > 0);
        if (words.size() > LLFile::longestLine || !isUsual) {
            return line;
        }
        start = std::size_t{ends[line]} + 1;
    }
    return ends.size();
}

} // namespace

void LLFile::setProject(const std::vector<Kernel>& project) {
    project_ = &project;
    kernels_.clear();
    kernels_.reserve(project.size());
    lacksRegisters_.clear();
    lacksRegisters_.reserve(project.size());
    std::unordered_set<std::string_view, TextHash> names;
    for (const Kernel& kernel : project) {
        const bool isFirst = names.insert(kernel.name()).second;
        lacksRegisters_.push_back(isFirst);
        if (isFirst) {
            kernels_.emplace_back().setName(kernel.name());
        } else {
            kernels_.push_back(kernel);
        }
    }
}

bool LLFile::parse() {
    if (!isOpen()) {
        return false;
    }
    matcher_.emplace(project_ == nullptr ? kernels_ : *project_, longestLine);
    knownNets_.emplace();
    const bool readToItsEnd = readLines();
    budget_.lineRead(bytesWithNets_ - paidBytes_);
    knownNets_.reset();
    matcher_.reset(); // it looks into the kernels, which the project takes now
    if (strangers_ > 0) {
        diagnostic_.note(firstStranger_, strangers_ == 1
                                             ? "its net belongs to no kernel"
                                             : "the first of " + std::to_string(strangers_) +
                                                   " lines whose net belongs to no kernel");
    }
    if (lostNets_ > 0) {
        diagnostic_.remark(firstLostNet_,
                           (lostNets_ == 1 ? ""
                                           : "the first of " + std::to_string(lostNets_) +
                                                 " lines without a net: ") +
                               std::string("a blank stands behind \"Net=\""));
    }
    return readToItsEnd;
}

bool LLFile::readLines() {
    static_cast<void>(stream_.peek()); // an empty file is at its end before a line is read
    std::array<char, longestLine + 1> buffer{};
    while (!stream_.eof()) {
        lineNumber_ = line();
        if (!takeUsualLines()) {
            const std::string text(readLine(buffer));
            if (stream_.eof()) { // it takes usual lines only up to their newlines
                diagnostic_.remark(
                    lineNumber_, "the last line has no newline at its end: was the file cut off?");
            }
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
    std::string_view piece = nextPiece(pieceSize_);
    std::span<const std::uint32_t> ends = lineEnds_.find(piece);
    if (ends.empty()) {
        piece = nextPiece(longestLine + 1);
        ends = lineEnds_.find(piece);
    }
    const auto startOf = [ends](std::size_t line) {
        return line == 0 ? std::size_t{0} : std::size_t{ends[line - 1]} + 1;
    };
    const std::uint64_t firstLine = lineNumber_;
    std::size_t lines = countUsualLines(piece, ends);
    std::size_t line = 0;
    std::size_t net = piece.find(NetWord::prefix);
    while (net < startOf(lines)) {
        while (ends[line] < net) {
            ++line;
        }
        lineNumber_ = firstLine + line;
        const std::size_t start = startOf(line);
        if (piece[start] != comment &&
            !takeUsualLine(piece.substr(start, ends[line] - start), net - start)) {
            lines = line;
            break;
        }
        net = piece.find(NetWord::prefix, ends[line]);
    }
    lineNumber_ = firstLine + lines;
    if (lines < ends.size()) {
        pieceSize_ = std::clamp(2 * startOf(lines), smallestPiece, largestPiece);
    } else if (lines > 0) {
        pieceSize_ = std::min(2 * pieceSize_, largestPiece);
    }
    skip(startOf(lines), lines);
    if (lines == 0 || ahead().empty() || isSpace(ahead().front())) {
        addWaiting(); // the stream may read now
    }
    return lines > 0;
}

std::string_view LLFile::nextPiece(std::size_t size) const {
    // A zero byte, which no usual line has, is as good as the end.
    const std::string_view piece = ahead().substr(0, size);
    return piece.substr(0, piece.find('\0'));
}

bool LLFile::takeUsualLine(std::string_view line, std::size_t net) {
    NetWord word;
    if (!word.find(line, net)) {
        return false;
    }
    if (!matcher_->mayKnowName(word.lastComponent())) {
        passOverStranger(line.size());
        return true;
    }
    if (contains(line, headerWord)) { // which a net may have in its name
        passOverIfStranger(word, line.size());
        return true;
    }
    BitLine bit;
    if (!bit.scan(word)) {
        return false;
    }
    bytesWithNets_ += line.size();
    waiting_[waitingCount_++] = {bit, lineNumber_, bytesWithNets_};
    if (waitingCount_ == mostWaiting) {
        addWaiting();
    }
    return true;
}

bool LLFile::handleLine(const std::string& text) {
    if (text.starts_with(comment)) {
        return true;
    }
    const bool isHeader = contains(text, headerWord);
    std::string_view words = text;
    const std::string_view first = takeWord(words);
    if (first != "Bit") {
        return isHeader ||
               stop(lineNumber_, "line begins with " + inQuotes(first) + ", not \"Bit\"");
    }
    const std::size_t net = text.find(NetWord::prefix);
    NetWord word;
    if (net == std::string::npos ||
        (word.find(text, net) && passOverIfStranger(word, text.size())) || isHeader) {
        return true;
    }
    const std::optional<BitLine> bit = BitLine::read(text);
    if (!bit) {
        diagnostic_.remark(lineNumber_, "the numbers of the line cannot be read");
    } else if (!bit->hasNet) {
        noteLostNet(text, net);
    } else {
        remarkOnOddIndex(*bit, text);
        bytesWithNets_ += text.size();
        add({*bit, lineNumber_, bytesWithNets_});
    }
    return true;
}

bool LLFile::passOverIfStranger(const NetWord& word, std::size_t lineLength) {
    if (matcher_->knowsName(word.lastComponent())) {
        return false;
    }
    passOverStranger(lineLength);
    return true;
}

void LLFile::passOverStranger(std::size_t lineLength) {
    bytesWithNets_ += lineLength;
    noteStranger(lineNumber_);
}

void LLFile::addWaiting() {
    const std::span lines = std::span(waiting_).first(waitingCount_);
    waitingCount_ = 0;
    std::array<KnownNets::Query, mostWaiting> space;
    const std::span queries = std::span(space).first(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        queries[i].net = lines[i].bit.net;
    }
    knownNets_->findAll(queries);
    const auto firstRegister = [this](const KnownNets::Query& query) {
        const auto& [owner, position] = query.registers.front();
        return &kernels_[owner].hardwareVariables()[position];
    };
    for (const KnownNets::Query& query : queries) {
        if (!query.registers.empty()) {
            const LocationList& locations = firstRegister(query)->locations;
            prefetch(&locations);
            prefetch(&locations + 1); // it may lie in two lines of the cache
        }
    }
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!queries[i].registers.empty()) {
            firstRegister(queries[i])->locations.prefetchEntry(lines[i].bit.number);
        }
    }
    bool areKnown = true; // so far: a net that gets known may move what was found
    for (std::size_t i = 0; i < lines.size(); ++i) {
        areKnown = areKnown && !queries[i].registers.empty();
        if (areKnown) {
            addToRegisters(lines[i], queries[i].registers);
        } else {
            add(lines[i]);
        }
    }
}

void LLFile::add(const NetLine& line) {
    const auto registers = knownNets_->find(line.bit.net);
    if (registers.empty()) {
        addToOwners(line);
    } else {
        addToRegisters(line, registers);
    }
}

void LLFile::addToOwners(const NetLine& line) {
    const auto& [net, bit, address, offset, hasNet] = line.bit;
    std::string name = "/";
    name += net;
    payFor(line);
    const auto owners = matcher_->owners(name, budget_.mostOwners());
    if (owners.empty()) {
        noteStranger(line.number);
        return;
    }
    if (!mayHave(line)) {
        return;
    }
    std::vector<KnownNets::Place> registers;
    for (const std::uint32_t owner : owners) {
        Kernel& kernel = withRegisters(owner);
        const bool isFurther = !registers.empty();
        if (isFurther && !mayShare(line)) {
            return;
        }
        if (!mayLeaveEmpty(line, kernel.emptyBitsBefore(name, bit))) {
            continue;
        }
        const std::size_t registersBefore = kernel.hardwareVariables().size();
        const std::size_t position = kernel.addHardwareLocation(name, bit, address, offset);
        if (isFurther && kernel.hardwareVariables().size() > registersBefore) {
            budget_.shareRegister(name.size());
        }
        registers.push_back({owner, static_cast<std::uint32_t>(position)});
    }
    if (registers.size() == owners.size()) {
        knownNets_->add(net, registers);
    }
}

Kernel& LLFile::withRegisters(std::uint32_t owner) {
    Kernel& kernel = kernels_[owner];
    if (owner < lacksRegisters_.size() && lacksRegisters_[owner]) {
        for (const HardwareVariable& known : (*project_)[owner].hardwareVariables()) {
            kernel.addHardwareVariable(known);
        }
        lacksRegisters_[owner] = false;
    }
    return kernel;
}

void LLFile::addToRegisters(const NetLine& line, std::span<const KnownNets::Place> registers) {
    payFor(line);
    if (!mayHave(line)) {
        return;
    }
    const BitLine& bit = line.bit;
    bool isFurther = false;
    for (const auto& [owner, position] : registers) {
        Kernel& kernel = kernels_[owner];
        const HardwareVariable& variable = kernel.hardwareVariables()[position];
        if (isFurther && !mayShare(line)) {
            return;
        }
        if (!mayLeaveEmpty(line, variable.emptyBitsBefore(bit.number))) {
            continue;
        }
        kernel.setHardwareLocation(position, bit.number, bit.address, bit.offset);
        isFurther = true;
    }
}

void LLFile::payFor(const NetLine& line) {
    budget_.lineRead(line.bytesWithNets - paidBytes_);
    paidBytes_ = line.bytesWithNets;
}

bool LLFile::mayHave(const NetLine& line) {
    if (line.bit.number >= bitLimit) {
        remarkOnSkipped(line, "registers of up to " + std::to_string(bitLimit) + " bits are kept");
        return false;
    }
    return true;
}

bool LLFile::mayShare(const NetLine& line) {
    if (!budget_.mayShare()) {
        remarkOnSkipped(
            line, "so many nets belong to several kernels that only the first kernels of this "
                  "one get it");
        return false;
    }
    budget_.shareLocation();
    return true;
}

bool LLFile::mayLeaveEmpty(const NetLine& line, std::uint32_t emptyBits) {
    if (!budget_.takeEmptyBits(emptyBits)) {
        remarkOnSkipped(line,
                        "the registers of this file have too many bits that it does not name");
        return false;
    }
    return true;
}

void LLFile::noteStranger(std::uint64_t lineNumber) {
    firstStranger_ = strangers_ == 0 ? lineNumber : std::min(firstStranger_, lineNumber);
    ++strangers_;
}

void LLFile::noteLostNet(std::string_view text, std::size_t net) {
    std::string_view behind = text.substr(net + NetWord::prefix.size());
    if (!behind.empty() && isSpace(behind.front()) && !takeWord(behind).empty()) {
        firstLostNet_ = lostNets_ == 0 ? lineNumber_ : firstLostNet_;
        ++lostNets_;
    }
}

void LLFile::remarkOnOddIndex(const BitLine& bit, std::string_view text) {
    text.remove_prefix(static_cast<std::size_t>(bit.net.data() - text.data()) + bit.net.size());
    if (!text.starts_with('[')) {
        return;
    }
    text.remove_prefix(1);
    const std::string_view index = text.substr(0, text.find(']'));
    if (index.empty() || index.find_first_not_of("0123456789") != std::string_view::npos) {
        diagnostic_.remark(lineNumber_, "bit index " + inQuotes(index) +
                                            " is no number and is read as " +
                                            std::to_string(bit.number));
    }
}

void LLFile::remarkOnSkipped(const NetLine& line, const std::string& reason) {
    std::string net = "/";
    net += line.bit.net;
    diagnostic_.remark(line.number, "bit " + std::to_string(line.bit.number) + " of " +
                                        inQuotes(net) + " is skipped: " + reason);
}

} // namespace consolidator
