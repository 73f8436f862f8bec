#include "readers/HLSFile.h"

#include "shared/Words.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

namespace consolidator {

namespace {

constexpr std::size_t extensionLength = 4;

bool isIndented(int character) {
    return character == ' ' || character == '\t';
}

/// The number that a text begins with; 0 without a digit in front, the largest number for one that
/// is larger.
std::uint32_t leadingNumber(std::string_view text) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t number = 0;
    for (const char c : text) {
        if (c < '0' || c > '9') {
            break;
        }
        // Capped at each digit, so that no run of digits gets beyond 64 bits.
        number = std::min(largest, number * 10 + static_cast<std::uint64_t>(c - '0'));
    }
    return static_cast<std::uint32_t>(number);
}

/// What stands in `text` between two of its positions, or behind the first one if there is no
/// second; empty unless the first comes before the second.
std::string_view between(std::string_view text, std::size_t from, std::size_t to) {
    return from < to ? text.substr(from + 1, to - from - 1) : std::string_view();
}

} // namespace

bool HLSFile::parse() {
    if (!isOpen()) {
        return false;
    }
    while (!stream_.eof()) {
        const std::string_view text = nextLine();
        if (!stuck() && !dispatch(text)) {
            return false;
        }
        if (stuck()) { // here, or inside a block
            return stopAtLine(lineNumber_, longestLine);
        }
    }
    if (!functions_.empty()) {
        stop(functions_.back().lineNumber,
             "function " + inQuotes(functions_.back().name) + " begins and does not end");
        functions_.clear();
        return false;
    }
    if (entries_.empty()) {
        diagnostic_.remark(0, Code::NoEntry,
                           "no line begins with \"RTL\": the kernel has no variables and no "
                           "source lines (lines that begin with a blank or a tab are skipped)");
    }
    Kernel kernel;
    kernel.setName(kernelName());
    convertEntries(kernel);
    kernels_.push_back(std::move(kernel));
    return true;
}

std::string_view HLSFile::nextLine() {
    lineNumber_ = line();
    return readLine(buffer_);
}

bool HLSFile::dispatch(std::string_view text) {
    if (text.empty() || isIndented(text.front())) {
        return true;
    }
    std::string_view words = text;
    const std::string_view first = takeWord(words);
    if (first == "RTL") {
        addEntry(words);
        return true;
    }
    const std::string_view second = takeWord(words);
    if (first == "Begin" && second == "Function") {
        functions_.push_back({std::string(takeWord(words)), lineNumber_});
        return true;
    }
    if (first == "End" && second == "Function") {
        return endFunction();
    }
    if (first == "local") {
        return readBlock(second);
    }
    return stop(lineNumber_, text.find_first_not_of('\r') == std::string_view::npos
                                 ? "the line is empty but for a carriage return"
                                 : "a line cannot begin with " + inQuotes(first));
}

bool HLSFile::endFunction() {
    if (functions_.empty()) {
        return stop(lineNumber_, "a function ends that has not begun");
    }
    // Names are not compared, so the innermost one ends.
    functions_.pop_back();
    return true;
}

void HLSFile::addEntry(std::string_view words) {
    RtlEntry entry;
    entry.lineNumber = lineNumber_;
    takeWord(words);
    takeWord(words);
    entry.condition = joinedWords(words, [](std::string_view) { return std::string_view(); });
    entries_.push_back(std::move(entry));
}

bool HLSFile::readBlock(std::string_view name) {
    if (entries_.empty()) {
        return stop(lineNumber_, "\"local\" comes before the first \"RTL\"");
    }
    HlsVariable variable;
    variable.name = name;
    std::string_view text;
    do {
        skipIndentedLines();
        text = nextLine();
    } while (!stream_.fail() && readBlockLine(text, variable));
    takeWord(text);
    // The line that has ended the block names the register, whatever line it is.
    variable.setRegister(registerRange(takeWord(text)));
    entries_.back().variables.push_back(std::move(variable));
    return true;
}

void HLSFile::skipIndentedLines() {
    while (stream_.good() && isIndented(stream_.peek())) {
        nextLine();
    }
}

bool HLSFile::readBlockLine(std::string_view text, HlsVariable& variable) {
    const std::string_view first = takeWord(text);
    const std::string_view second = takeWord(text);
    const std::size_t colon = second.find(':');
    if (!takeWord(text).empty() || colon == std::string_view::npos) {
        return false;
    }
    if (first == "reg:") {
        variable.setRegister(registerRange(second));
    } else {
        entries_.back().files.emplace_back(second.substr(0, colon));
        entries_.back().lines.push_back(leadingNumber(second.substr(colon + 1)));
    }
    return true;
}

HLSFile::Register HLSFile::registerRange(std::string_view word) {
    const std::size_t open = word.find('[');
    const std::size_t colon = word.find(':');
    const std::size_t close = word.find(']');
    const std::uint32_t high = leadingNumber(between(word, open, colon));
    const std::uint32_t low = leadingNumber(between(word, colon, close));
    // A range the wrong way round wraps around; no width is written to a database.
    return {word.substr(0, open), high - low + 1};
}

void HLSFile::HlsVariable::setRegister(const Register& range) {
    rtlName = range.name;
    width = range.width;
}

std::string HLSFile::kernelName() const {
    std::string name = fileName_.value_or("");
    name.erase(0, name.rfind('/') + 1); // the whole name stays if there is no "/"
    if (name.size() >= extensionLength) {
        name.resize(name.size() - extensionLength);
    }
    return name;
}

void HLSFile::convertEntries(Kernel& kernel) {
    std::set<std::uint32_t> seen; // a hash table could be made slow by chosen numbers
    for (const RtlEntry& entry : entries_) {
        if (entry.files.empty()) {
            diagnostic_.note(entry.lineNumber, Code::NoSourceLine,
                             "the entry has no source line and is passed over");
            continue;
        }
        if (!seen.insert(entry.lines.front()).second) {
            diagnostic_.note(entry.lineNumber, Code::RepeatedSourceLine,
                             "an entry for source line " + std::to_string(entry.lines.front()) +
                                 " came before; this one is passed over");
            continue;
        }
        BreakableCondition condition(BreakableCondition::FileLine, entry.condition);
        condition.file = entry.files.front();
        condition.line = entry.lines.front();
        kernel.addBreakableCondition(condition);
        for (const HlsVariable& variable : entry.variables) {
            kernel.addVariable(variable.name, variable.rtlName, "int");
        }
    }
}

} // namespace consolidator
