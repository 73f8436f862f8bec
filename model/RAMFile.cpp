#include "model/RAMFile.h"

#include <algorithm>
#include <array>
#include <istream>
#include <optional>
#include <utility>

namespace consolidator {

namespace {

constexpr std::uint32_t inferred = 3;
constexpr std::uint32_t instantiated = 6;

/// Takes the text before the first "|" off the front of `row`, with the "|"; null when there is no
/// "|" left.
std::optional<std::string_view> takeCell(std::string_view& row) {
    const std::size_t end = row.find('|');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view cell = row.substr(0, end);
    row.remove_prefix(end + 1);
    return cell;
}

} // namespace

RAMFile::Paths::Paths(const std::vector<Kernel>& kernels)
    : index(KernelIndex::ofInstancePaths(kernels, longestLine)),
      finder(index.texts()),
      counted(kernels.size()) {}

RAMFile::RAMFile(const std::string& path, const std::vector<Kernel>& projectKernels,
                 std::ostream& errors)
    : InputFile(path, errors), projectKernels_(&projectKernels) {}

RAMFile::RAMFile(std::unique_ptr<std::streambuf> source, const std::vector<Kernel>& projectKernels,
                 std::ostream& errors)
    : InputFile(std::move(source), errors), projectKernels_(&projectKernels) {}

bool RAMFile::parse() {
    if (!isOpen()) {
        return false;
    }
    // Not before: for a file that cannot be opened no index is made.
    paths_.emplace(*projectKernels_);
    std::array<char, longestLine + 1> buffer{};
    while (!stream_.eof()) {
        lineNumber_ = line();
        parseLine(readLine(buffer));
        if (stuck()) {
            stopAtLine(lineNumber_, longestLine);
            return true;
        }
        // Empty lines go, and blanks in front of a line; the end of the file is noticed here.
        stream_ >> std::ws;
    }
    return true;
}

void RAMFile::parseLine(std::string_view text) {
    if (section_ != inferred && section_ != instantiated) {
        enterSection(text);
    } else if (text.starts_with('-')) {
        return;
    } else if (text == "4. Memory Performance - Inferred" ||
               text == "7. Memory Utilization - Instantiated") {
        ++section_; // either line ends either table
    } else {
        matchRow(text);
    }
}

void RAMFile::enterSection(std::string_view text) {
    // The first time that the titles come is in the table of contents.
    if (pastContents_ && text == "3. Memory Utilization - Inferred") {
        section_ = inferred;
    } else if (pastContents_ && text == "6. Memory Utilization - Instantiated") {
        section_ = instantiated;
    }
    hasTable_ = hasTable_ || section_ == inferred || section_ == instantiated;
    if (text == "8. Block Ram / URAM Memory Power - Instantiated") {
        pastContents_ = true;
    }
}

void RAMFile::matchRow(std::string_view row) {
    // The "|" that a row begins with; whatever stands there is not looked at.
    row.remove_prefix(row.empty() ? 0 : 1);
    const auto name = takeCell(row);
    const auto cellType = takeCell(row);
    if (!name || !cellType || cellType->find("RAMB") == std::string_view::npos) {
        return;
    }
    ++blockRamCount_;
    if (const Owners owners = ownersOf(*name); owners.count > 0) {
        diagnostic_.note(lineNumber_, Code::BlockRam,
                         "block RAM " + inQuotes(*name) + " belongs to " + described(owners) +
                             "; its name is not stored");
    }
}

RAMFile::Owners RAMFile::ownersOf(std::string_view name) {
    // Only the first remarks are kept: for the others it is enough that there is an owner.
    const bool isKept = diagnostic_.remarks().size() < Diagnostic::mostRemarks;
    Owners owners;
    paths_->counted.clear();
    paths_->finder.forEachIn(name, [&](std::uint32_t path) {
        for (const std::uint32_t kernel : paths_->index.kernelsOf(path)) {
            if (paths_->counted.set(kernel)) {
                // Paths come in the order in which they end in the name, not in that of their
                // kernels.
                owners.first = std::min(owners.first, kernel);
                ++owners.count;
            }
            if (!isKept) {
                return false;
            }
        }
        return true;
    });
    return owners;
}

std::string RAMFile::described(const Owners& owners) const {
    std::string result = "kernel " + inQuotes((*projectKernels_)[owners.first].name());
    if (owners.count > 1) {
        result += " and " + std::to_string(owners.count - 1);
        result += owners.count == 2 ? " more kernel" : " more kernels";
    }
    return result;
}

} // namespace consolidator
