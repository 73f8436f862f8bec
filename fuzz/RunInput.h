// Whole runs as fuzz inputs: one text is cut into files of all kinds, at lines of "==" and the
// letter of the option that the piece is given with.
//
//     ==h              a hierarchy file; likewise k, s, x, l, r, d
//     scale
//     type: hls
//     ==s              HLS files are named scale.hls, check.hls and k.hls, in this order
//     Begin Function …
//     ==f              the database as it was before; binary
//     ==p              the project's name
//     ==c              start afresh
#pragma once

#include "fuzz/ScratchDirectory.h"

#include <string>
#include <string_view>
#include <vector>

namespace consolidator::fuzz {

inline constexpr std::string_view databaseName = "db.bin";

struct Piece {
    char option;
    std::string_view bytes;
};

/// The pieces of an input, which they point into; nothing is said of what stands before the first.
std::vector<Piece> piecesOf(std::string_view bytes);

/// An input file of a run.
struct InputPiece {
    char option;
    std::string path;
};

/// One run: its command line, and the database before it.
struct RunInput {
    std::vector<std::string> words{"consolidator"};
    std::vector<InputPiece> files;
    std::string database;
    bool hasDatabase = false;
    bool isFresh = false;
};

/// Puts the pieces, but for the database, into files and names them on a command line.
RunInput prepareRun(const ScratchDirectory& directory, const std::vector<Piece>& pieces);

} // namespace consolidator::fuzz
