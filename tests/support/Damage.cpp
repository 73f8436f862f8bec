#include "tests/support/Damage.h"

namespace consolidator::test {

Damage::Damage(const std::string& good, std::size_t number) : bytes(good) {
    const std::size_t place = number / damagesPerByte;
    const std::size_t kind = number % damagesPerByte;
    char& byte = bytes[place];
    switch (kind) {
    case 0:
        what = "cut";
        bytes.resize(place);
        break;
    case 1:
        what = "0x00";
        byte = '\0';
        break;
    case 2:
        what = "0xFF";
        byte = '\xFF';
        break;
    default:
        what = "bit " + std::to_string(kind - 3) + " flipped";
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ (1U << (kind - 3)));
    }
    what += " at byte " + std::to_string(place);
}

} // namespace consolidator::test
