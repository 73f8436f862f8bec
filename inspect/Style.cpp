#include "inspect/Style.h"

namespace consolidator::inspect {

std::string styled(std::string_view text, std::string_view sequence, bool colour) {
    if (!colour) {
        return std::string(text);
    }
    std::string result(sequence);
    result += text;
    result += "\x1b[0m";
    return result;
}

} // namespace consolidator::inspect
