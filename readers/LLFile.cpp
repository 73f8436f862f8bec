#include "readers/LLFile.h"

#include "readers/BitLine.h"
#include "readers/LineScanner.h"
#include "readers/NetMatcher.h"
#include "readers/RegisterWriter.h"
#include "shared/TextHash.h"
#include "shared/Words.h"

#include <array>
#include <istream>
#include <optional>
#include <string>
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

/// How many lines of the piece are before the first that is too long or begins in another way than
/// that, or a comment, or an empty line behind another one.
std::size_t countUsualLines(const LineScanner::Piece& piece) {
    std::size_t start = 0;
    for (std::size_t line = 0; line < piece.lineCount(); ++line) {
        const std::string_view words = piece.text.substr(start, piece.ends[line] - start);
        const bool isUsual =
            beginsWithBit(words) || words.starts_with(comment) || (words.empty() && line > 0);
        if (words.size() > LLFile::longestLine || !isUsual) {
            return line;
        }
        start = std::size_t{piece.ends[line]} + 1;
    }
    return piece.lineCount();
}

} // namespace

/// One reading of the file, from its beginning to its end: which lines there are, what each is
/// about, and what is to be said of it.
class LLFile::Reading {
public:
    explicit Reading(LLFile& file)
        : file_(file),
          matcher_(file.project_ == nullptr ? file.kernels_ : *file.project_, longestLine) {}

    bool run();

private:
    bool readLines();

    /// Takes lines off ahead() as long as they are what tools write, which is nearly always so.
    /// False when there is none, and the stream has to read the next line.
    bool takeUsualLines();
    bool takeUsualLine(std::string_view line, std::size_t net);
    bool handleLine(const std::string& text);
    void handleBit(const std::string& text, std::size_t net, std::string_view knownNet);

    bool passOverIfUnmatched(const NetWord& word, std::size_t lineLength);
    void passOverUnmatched(const NetWord& word, std::size_t lineLength);
    void tellOf(std::string_view net);

    void noteBlankNet(std::string_view text, std::size_t net);
    void remarkOnOddIndex(const BitLine& bit, std::string_view text);
    void remarkOnTallies();

    LLFile& file_;
    std::uint64_t lineNumber_ = 0;
    std::uint64_t bytesWithNets_ = 0; ///< Of the lines with a net that were read.
    LineTally unmatched_;             ///< Lines whose net belongs to no kernel.
    LineTally blankNets_;             ///< Lines with a blank behind "Net=".

    LineScanner scanner_{longestLine};
    NetMatcher matcher_; ///< Of the project's kernels.

    /// The nets of lines that wait in it are views of ahead(): its addWaiting() comes before the
    /// stream may read.
    RegisterWriter writer_{{file_.kernels_, file_.project_, file_.lacksRegisters_, matcher_,
                            file_.budget_, file_.diagnostic_, unmatched_, file_.observer_}};
};

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
    // The reading looks into the kernels, which the project takes afterwards.
    return isOpen() && Reading(*this).run();
}

bool LLFile::Reading::run() {
    const bool readToItsEnd = readLines();
    // Lines behind the last one of a kernel pay for the files that follow, too.
    writer_.payFor(bytesWithNets_);
    remarkOnTallies();
    return readToItsEnd;
}

bool LLFile::Reading::readLines() {
    std::istream& stream = file_.stream_;
    static_cast<void>(stream.peek()); // an empty file is at its end before a line is read
    std::array<char, longestLine + 1> buffer{};
    while (!stream.eof()) {
        lineNumber_ = file_.line();
        if (!takeUsualLines()) {
            const std::string text(file_.readLine(buffer));
            if (stream.eof()) { // it takes usual lines only up to their newlines
                file_.diagnostic_.remark(
                    lineNumber_, Code::NoFinalNewline,
                    "the last line has no newline at its end: was the file cut off?");
            }
            if (!stream.bad() && !handleLine(text)) {
                return false;
            }
            if (file_.stuck()) {
                return file_.stopAtLine(lineNumber_, longestLine);
            }
        }
        // Empty lines go, and blanks in front of a line; the end of the file is noticed here.
        stream >> std::ws;
    }
    return true;
}

bool LLFile::Reading::takeUsualLines() {
    const LineScanner::Piece piece = scanner_.next(file_.ahead());
    const std::uint64_t firstLine = lineNumber_;
    std::size_t lines = countUsualLines(piece);
    std::size_t line = 0;
    // From net to net: 85 % of the lines have none and need no look of their own.
    std::size_t net = piece.text.find(NetWord::prefix);
    while (net < piece.startOf(lines)) {
        while (piece.ends[line] < net) {
            ++line;
        }
        lineNumber_ = firstLine + line;
        const std::size_t start = piece.startOf(line);
        if (piece.text[start] != comment && !takeUsualLine(piece.line(line), net - start)) {
            lines = line;
            break;
        }
        net = piece.text.find(NetWord::prefix, piece.ends[line]);
    }
    lineNumber_ = firstLine + lines;
    scanner_.took(piece, lines);
    file_.skip(piece.startOf(lines), lines);
    if (lines == 0 || file_.ahead().empty() || isSpace(file_.ahead().front())) {
        writer_.addWaiting(); // the stream may read now
    }
    return lines > 0;
}

bool LLFile::Reading::takeUsualLine(std::string_view line, std::size_t net) {
    NetWord word;
    if (!word.find(line, net)) {
        return false;
    }
    // Two thirds of the nets belong to no kernel, and one bit shows it of most: so this comes
    // first, and the numbers of their lines are never read.
    if (!matcher_.mayKnowName(word.lastComponent())) {
        passOverUnmatched(word, line.size());
        return true;
    }
    if (contains(line, headerWord)) { // which a net may have in its name
        passOverIfUnmatched(word, line.size());
        return true;
    }
    BitLine bit;
    if (!bit.scan(word)) {
        return false;
    }
    bytesWithNets_ += line.size();
    tellOf(bit.net);
    writer_.addLater({bit, lineNumber_, bytesWithNets_});
    return true;
}

bool LLFile::Reading::handleLine(const std::string& text) {
    if (text.starts_with(comment)) {
        return true;
    }
    const bool isHeader = contains(text, headerWord);
    std::string_view words = text;
    const std::string_view first = takeWord(words);
    if (first != "Bit") {
        return isHeader ||
               file_.stop(lineNumber_, "line begins with " + inQuotes(first) + ", not \"Bit\"");
    }
    const std::size_t net = text.find(NetWord::prefix);
    NetWord word;
    const bool hasNet = net != std::string::npos;
    const bool isUsual = hasNet && word.find(text, net);
    const bool isUnmatched = isUsual && passOverIfUnmatched(word, text.size());
    if (hasNet && !isUnmatched && !isHeader) {
        handleBit(text, net, isUsual ? word.name : std::string_view());
    }
    return true;
}

/// A line with "Net=" at a position, and the net that it is known to name, if any.
void LLFile::Reading::handleBit(const std::string& text, std::size_t net,
                                std::string_view knownNet) {
    const std::optional<BitLine> bit = BitLine::read(text);
    if (!bit) {
        file_.diagnostic_.remark(lineNumber_, Code::UnreadableNumbers,
                                 "the numbers of the line cannot be read");
        if (!knownNet.empty()) {
            tellOf(knownNet);
        }
    } else if (!bit->hasNet) {
        noteBlankNet(text, net);
    } else {
        remarkOnOddIndex(*bit, text);
        bytesWithNets_ += text.size();
        tellOf(bit->net);
        writer_.add({*bit, lineNumber_, bytesWithNets_});
    }
}

bool LLFile::Reading::passOverIfUnmatched(const NetWord& word, std::size_t lineLength) {
    if (matcher_.knowsName(word.lastComponent())) {
        return false;
    }
    passOverUnmatched(word, lineLength);
    return true;
}

void LLFile::Reading::passOverUnmatched(const NetWord& word, std::size_t lineLength) {
    bytesWithNets_ += lineLength;
    tellOf(word.name);
    unmatched_.note(lineNumber_);
}

void LLFile::Reading::tellOf(std::string_view net) {
    if (file_.observer_ != nullptr) {
        file_.observer_->netNamed(net, lineNumber_);
    }
}

void LLFile::Reading::noteBlankNet(std::string_view text, std::size_t net) {
    std::string_view behind = text.substr(net + NetWord::prefix.size());
    if (!behind.empty() && isSpace(behind.front()) && !takeWord(behind).empty()) {
        blankNets_.note(lineNumber_);
    }
}

void LLFile::Reading::remarkOnOddIndex(const BitLine& bit, std::string_view text) {
    // The net is a view of this line, so what stands behind it can be reached from it.
    text.remove_prefix(static_cast<std::size_t>(bit.net.data() - text.data()) + bit.net.size());
    if (!text.starts_with('[')) {
        return;
    }
    text.remove_prefix(1);
    const std::string_view index = text.substr(0, text.find(']'));
    if (index.empty() || index.find_first_not_of("0123456789") != std::string_view::npos) {
        file_.diagnostic_.remark(lineNumber_, Code::OddBitIndex,
                                 "bit index " + inQuotes(index) + " is no number and is read as " +
                                     std::to_string(bit.bitIndex));
    }
}

void LLFile::Reading::remarkOnTallies() {
    if (unmatched_.count > 0) {
        file_.diagnostic_.note(unmatched_.first, Code::NetOfNoKernel,
                               unmatched_.count == 1
                                   ? "its net belongs to no kernel"
                                   : "the first of " + std::to_string(unmatched_.count) +
                                         " lines whose net belongs to no kernel");
    }
    if (blankNets_.count > 0) {
        file_.diagnostic_.remark(
            blankNets_.first, Code::BlankNet,
            (blankNets_.count == 1
                 ? ""
                 : "the first of " + std::to_string(blankNets_.count) + " lines without a net: ") +
                std::string("a blank stands behind \"Net=\""));
    }
}

} // namespace consolidator
