// Bytes as text (RFC 4648, section 4).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace consolidator::inspect {

/// Large data can be encoded piece by piece: the texts of pieces whose sizes are multiples of this,
/// but for the last one, make up the text of the whole.
inline constexpr std::size_t base64Group = 3;

/// The bytes in Base64, padded with "=" to a multiple of four characters: "TWE=" for "Ma".
std::string base64(std::string_view bytes);

} // namespace consolidator::inspect
