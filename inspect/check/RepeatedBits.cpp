#include "inspect/check/RepeatedBits.h"

#include "inspect/check/FileLook.h"
#include "readers/BitLine.h"
#include "readers/LLFile.h"
#include "shared/Numbers.h"
#include "shared/TextHash.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <optional>
#include <string_view>
#include <tuple>
#include <unordered_set>

namespace consolidator::inspect {

namespace {

/// A line, by the bit that it is about.
struct Placement {
    std::uint64_t bitHash; ///< Of net and bit.
    std::uint64_t place;   ///< Address and offset.
    std::uint64_t line;
};

/// The bit that a line is about; nothing if it is about none.
std::optional<BitLine> bitOf(const std::string& line) {
    const std::size_t net = line.find(NetWord::prefix);
    const bool isHeader = line.find(LLFile::headerWord) != std::string::npos;
    if (net == std::string::npos || isHeader || !line.starts_with("Bit")) {
        return std::nullopt;
    }
    NetWord word;
    BitLine bit;
    if (word.find(line, net) && bit.scan(word)) {
        return bit;
    }
    return BitLine::read(line);
}

/// Looks through one file after the other.
class Search {
public:
    explicit Search(const std::vector<Kernel>& kernels) {
        for (const Kernel& kernel : kernels) {
            for (const HardwareVariable& variable : kernel.hardwareVariables()) {
                registers_.insert(variable.name);
            }
        }
    }

    void read(const std::string& path, Progress& progress) {
        placements_.clear();
        std::ifstream file(path);
        std::array<char, LLFile::longestLine + 1> buffer{};
        std::string text;
        std::uint64_t bytes = 0;
        constexpr std::uint64_t linesBetween = 1024;
        for (std::uint64_t line = 1; file.good(); ++line) {
            file.getline(buffer.data(), static_cast<std::streamsize>(buffer.size()));
            bytes += static_cast<std::uint64_t>(file.gcount());
            if (line % linesBetween == 0) {
                progress.update(bytes);
            }
            text = buffer.data();
            add(text, line);
        }
    }

    /// What was found in the file that was read last.
    void report(const std::string& path, Findings& findings) {
        std::ranges::sort(placements_, [](const Placement& left, const Placement& right) {
            return std::tie(left.bitHash, left.line) < std::tie(right.bitHash, right.line);
        });
        const Placement* first = nullptr; // of the lines that contradict the one before them
        std::uint64_t lineBefore = 0;
        std::uint64_t count = 0;
        for (std::size_t i = 1; i < placements_.size(); ++i) {
            const Placement& before = placements_[i - 1];
            const Placement& placement = placements_[i];
            if (before.bitHash != placement.bitHash || before.place == placement.place) {
                continue;
            }
            ++count;
            if (first == nullptr || placement.line < first->line) {
                first = &placement;
                lineBefore = before.line;
            }
        }
        if (first != nullptr) {
            findings.add(
                {path, first->line, Severity::Warning, "repeated-bit",
                 "line " + std::to_string(lineBefore) +
                     " places the same bit elsewhere, and the later line counts" +
                     (count > 1 ? "; there are " + inWords(count - 1, "more such line") : "")});
        }
    }

private:
    void add(const std::string& text, std::uint64_t line) {
        const std::optional<BitLine> bit = bitOf(text);
        if (!bit || !bit->hasNet || bit->number >= LLFile::bitLimit) {
            return;
        }
        name_ = '/';
        name_ += bit->net;
        if (registers_.contains(name_)) {
            placements_.push_back({KeyedHash().add(name_).add(bit->number).value(),
                                   std::uint64_t{bit->address} << 32U | bit->offset, line});
        }
    }

    std::unordered_set<std::string_view, TextHash> registers_; ///< With their leading "/".
    std::vector<Placement> placements_;
    std::string name_;
};

} // namespace

void reportRepeatedBits(const std::vector<Kernel>& kernels, const std::vector<std::string>& paths,
                        Findings& findings, Progress& progress) {
    Search search(kernels);
    for (const std::string& path : paths) {
        progress.begin(path, FileLook::at(path).size);
        search.read(path, progress);
        progress.end();
        search.report(path, findings);
    }
}

} // namespace consolidator::inspect
