#include "fuzz/RunInput.h"

#include <array>
#include <cstddef>

namespace consolidator::fuzz {

namespace {

constexpr std::size_t mostPieces = 24;
constexpr std::array<std::string_view, 3> hlsNames = {"scale.hls", "check.hls", "k.hls"};

/// The next "==X" line at or behind `from` that begins a piece.
std::size_t findMark(std::string_view bytes, std::size_t from) {
    constexpr std::string_view options = "hksxlrdfpc";
    for (std::size_t mark = bytes.find("==", from); mark != std::string_view::npos;
         mark = bytes.find("==", mark + 1)) {
        const bool beginsLine = mark == 0 || bytes[mark - 1] == '\n';
        if (beginsLine && mark + 3 < bytes.size() && bytes[mark + 3] == '\n' &&
            options.find(bytes[mark + 2]) != std::string_view::npos) {
            return mark;
        }
    }
    return bytes.size();
}

std::string fileNameOf(char option, std::size_t number, std::size_t hlsNumber) {
    if (option == 's' && hlsNumber < hlsNames.size()) {
        return std::string(hlsNames.at(hlsNumber));
    }
    return std::to_string(number) + ".txt";
}

} // namespace

std::vector<Piece> piecesOf(std::string_view bytes) {
    std::vector<Piece> pieces;
    for (std::size_t mark = findMark(bytes, 0);
         mark < bytes.size() && pieces.size() < mostPieces;) {
        const std::size_t next = findMark(bytes, mark + 4);
        pieces.push_back({bytes[mark + 2], bytes.substr(mark + 4, next - mark - 4)});
        mark = next;
    }
    return pieces;
}

RunInput prepareRun(const ScratchDirectory& directory, const std::vector<Piece>& pieces) {
    RunInput run;
    std::size_t hlsCount = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const auto [option, bytes] = pieces[i];
        if (option == 'f') {
            run.database = bytes;
            run.hasDatabase = true;
            continue;
        }
        run.words.push_back(std::string("-") + option);
        if (option == 'c') {
            run.isFresh = true;
        } else if (option == 'p') {
            run.words.push_back("name" + std::string(bytes.substr(0, bytes.find('\0'))));
        } else {
            const std::string name = fileNameOf(option, i, hlsCount);
            hlsCount += option == 's' ? 1 : 0;
            directory.write(name, bytes);
            run.words.push_back(directory.path(name));
            run.files.push_back({option, directory.path(name)});
        }
    }
    run.words.emplace_back("-f");
    run.words.push_back(directory.path(databaseName));
    return run;
}

} // namespace consolidator::fuzz
