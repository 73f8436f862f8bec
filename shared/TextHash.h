// For hash tables whose keys come from files.
#pragma once

#include "shared/KeyedHash.h"

#include <cstddef>
#include <string_view>

namespace consolidator {

/// Hashes texts so that no file can be made whose texts all collide; see KeyedHash.h.
struct TextHash {
    std::size_t operator()(std::string_view text) const { return keyHash(text); }
};

} // namespace consolidator
