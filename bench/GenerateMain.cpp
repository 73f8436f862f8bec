// Writes one large file of the project that LargeProject.h describes:
//
//     bench_generate hierarchy|hls|ll|xml|blob [SETTING=NUMBER]...      to standard output
//     bench_generate database FILE [SETTING=NUMBER]...                 to a file
//
// Settings: kernels, instances, variables, bits, per-line; for ll also with-net and of-kernels
// (percent), registers and once, for xml arguments (percent); for ll, xml and blob the length, mib.

#include "bench/LargeProject.h"
#include "consolidated/ConsolidatedFile.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace consolidator;
using namespace consolidator::bench;

struct Settings {
    Shape shape;
    Lines lines;
    std::uint32_t argumentShare = 10;
    std::uint32_t mebibytes = 1;

    /// False for a word that is no setting.
    bool take(std::string_view word) {
        const std::size_t sign = word.find('=');
        std::uint32_t* const field = find(word.substr(0, sign));
        if (sign == std::string_view::npos || field == nullptr) {
            return false;
        }
        const char* const end = word.data() + word.size();
        const auto [stopped, error] = std::from_chars(word.data() + sign + 1, end, *field);
        return error == std::errc() && stopped == end;
    }

    /// Only shares and lengths may be 0: there must be something to choose from.
    bool areUsable() const {
        return shape.kernels > 0 && shape.instances > 0 && shape.variables > 0 && shape.bits > 0 &&
               shape.perLine > 0 && lines.registers > 0;
    }

    std::uint64_t bytes() const { return std::uint64_t{1024} * 1024 * mebibytes; }

private:
    std::uint32_t* find(std::string_view name) {
        struct Row {
            std::string_view name;
            std::uint32_t& field;
        };
        for (const Row& row :
             {Row{"kernels", shape.kernels}, Row{"instances", shape.instances},
              Row{"variables", shape.variables}, Row{"bits", shape.bits},
              Row{"per-line", shape.perLine}, Row{"with-net", lines.withNet},
              Row{"of-kernels", lines.ofKernels}, Row{"registers", lines.registers},
              Row{"once", lines.once}, Row{"arguments", argumentShare}, Row{"mib", mebibytes}}) {
            if (row.name == name) {
                return &row.field;
            }
        }
        return nullptr;
    }
};

std::optional<Settings> settingsOf(std::span<const std::string> words) {
    Settings settings;
    for (const std::string& word : words) {
        if (!settings.take(word)) {
            std::cerr << "bench_generate: no setting: " << word << "\n";
            return std::nullopt;
        }
    }
    if (!settings.areUsable()) {
        std::cerr << "bench_generate: only shares and lengths may be 0\n";
        return std::nullopt;
    }
    return settings;
}

/// Bytes of all values.
void writeBlob(std::ostream& out, std::uint64_t bytes) {
    std::string block(std::size_t{64} * 1024, '\0');
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = static_cast<char>(i * i >> 8 & 255);
    }
    for (std::uint64_t written = 0; written < bytes; written += block.size()) {
        out << block;
    }
}

bool writeDatabase(const std::string& path, const Shape& shape) {
    ConsolidatedFile database;
    if (!database.open(path, true, false)) {
        return false;
    }
    for (Kernel& kernel : fullKernels(shape)) {
        database.mergeKernel(std::move(kernel));
    }
    database.write();
    return true;
}

bool writeText(std::ostream& out, const std::string& kind, const Settings& settings) {
    if (kind == "hierarchy") {
        writeHierarchy(out, settings.shape);
    } else if (kind == "hls") {
        writeHls(out, settings.shape);
    } else if (kind == "ll") {
        writeLogicLocations(out, settings.shape, settings.lines, settings.bytes());
    } else if (kind == "xml") {
        writeKernelXml(out, settings.argumentShare, settings.bytes());
    } else if (kind == "blob") {
        writeBlob(out, settings.bytes());
    } else {
        std::cerr << "bench_generate: no kind of file: " << kind << "\n";
        return false;
    }
    return out.flush().good();
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    const bool isDatabase = !words.empty() && words.front() == "database";
    const std::size_t fixed = isDatabase ? 2 : 1;
    if (words.size() < fixed) {
        std::cerr << "bench_generate: which file?\n";
        return EXIT_FAILURE;
    }
    const std::optional<Settings> settings = settingsOf(std::span(words).subspan(fixed));
    if (!settings) {
        return EXIT_FAILURE;
    }
    std::ios::sync_with_stdio(false);
    const bool done = isDatabase ? writeDatabase(words[1], settings->shape)
                                 : writeText(std::cout, words[0], *settings);
    return done ? EXIT_SUCCESS : EXIT_FAILURE;
}
