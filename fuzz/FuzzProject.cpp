#include "fuzz/FuzzProject.h"

#include "shared/Words.h"

#include <cstddef>

namespace consolidator::fuzz {

namespace {

constexpr std::string_view fixedProject = "kernel scale\n"
                                          "path top/scale_1\n"
                                          "path top/scale_10\n"
                                          "arg size_r\n"
                                          "var sum\n"
                                          "kernel check\n"
                                          "path k\n"
                                          "path\n"
                                          "var crc\n"
                                          "var\n"
                                          "reg /top/k/crc\n";

std::vector<Kernel> kernelsOf(std::string_view definitions) {
    std::vector<Kernel> kernels;
    while (!definitions.empty()) {
        const std::size_t end = definitions.find('\n');
        std::string_view line = definitions.substr(0, end);
        definitions.remove_prefix(end == std::string_view::npos ? definitions.size() : end + 1);
        const std::string_view word = takeWord(line);
        std::string value(takeWord(line));
        std::erase(value, '\0'); // which a stored text does not keep
        if (word == "kernel" || kernels.empty()) {
            kernels.emplace_back().setName(value);
        } else if (word == "path") {
            kernels.back().addInstancePath(value);
        } else if (word == "arg") {
            kernels.back().addArgument(value, value, "int");
        } else if (word == "var") {
            kernels.back().addVariable(value + "_source", value, "int");
        } else if (word == "reg") {
            kernels.back().addHardwareLocation(value, 1, 4096, 7);
        }
    }
    return kernels;
}

} // namespace

ProjectAndText splitProject(std::string_view bytes) {
    constexpr std::string_view separator = "---\n";
    const std::size_t middle = bytes.find(separator);
    if (middle == std::string_view::npos || (middle > 0 && bytes[middle - 1] != '\n')) {
        return {kernelsOf(fixedProject), std::string(bytes)};
    }
    return {kernelsOf(bytes.substr(0, middle)),
            std::string(bytes.substr(middle + separator.size()))};
}

} // namespace consolidator::fuzz
