#include "tests/support/OddLogicLocations.h"

#include "tests/support/Bytes.h"

#include <string_view>

namespace consolidator::test {

std::size_t OddLogicLocations::below(std::size_t limit) {
    return engine_() % limit; // a distribution would not be the same everywhere
}

bool OddLogicLocations::onceIn(std::size_t times) {
    return below(times) == 0;
}

std::string OddLogicLocations::anyOf(const Choices& choices) {
    return choices[below(choices.size())];
}

std::string OddLogicLocations::mostlyFirst(const Choices& choices, std::size_t times) {
    return onceIn(times) ? anyOf(choices) : choices.front();
}

Kernel OddLogicLocations::kernel(const std::string& name) {
    const Choices paths = {"top/k_1", "top/k_10", "/top/k_1", "",       "k_1/inst", "top",
                           "/",       "inst",     "x",        "/n",     "n",        "top/k_1[2]",
                           "k_",      "//",       "///",      "op/k_1", "p/",       "k",
                           "/k_1/",   "k_2",      "top/k_1/n"};
    const Choices names = {"n",  "n_r", "n",    "state", "",      "a[2]_x",
                           "n]", "k_1", "n[1]", "n[2",   "Net=n", "top"};
    Kernel kernel;
    kernel.setName(name);
    for (std::size_t count = below(4); count > 0; --count) {
        kernel.addInstancePath(mostlyFirst(paths, 2));
    }
    for (std::size_t count = below(4); count > 0; --count) {
        kernel.addArgument("argument" + std::to_string(count), mostlyFirst(names, 2), "int");
    }
    for (std::size_t count = below(4); count > 0; --count) {
        kernel.addVariable("variable" + std::to_string(count), mostlyFirst(names, 2), "int");
    }
    if (onceIn(4)) {
        kernel.addHardwareLocation("/top/k_1/n", 2, 7, 9);
        kernel.addHardwareVariable(HardwareVariable("/n"));
    }
    return kernel;
}

std::vector<Kernel> OddLogicLocations::kernels() {
    std::vector<Kernel> result;
    const std::size_t most = onceIn(10) ? 60 : 4; // now and then, many that have much in common
    for (std::size_t count = below(most) + below(3); count > 0; --count) {
        result.push_back(kernel("kernel_" + std::to_string(count)));
    }
    return result;
}

std::string OddLogicLocations::net() {
    const Choices folders = {"top/k_1/",
                             "top/k_1/inst/",
                             "top/k_10/",
                             "",
                             "/",
                             "/top/k_1/",
                             "k_1/inst/",
                             "x/",
                             "top/k_1[2]/",
                             "//",
                             "top/k_1[3]/n/"};
    const Choices names = {"n",   "n_r",  "state", "n", "",      "a[2]_x", "n]",
                           "k_1", "n[1]", "[",     "]", "Net=n", "top"};
    const Choices indices = {
        "",           "[0]",          "[1]",          "[7]",           "[40]",   "[]",
        "[x]",        "[+2]",         "[-1]",         "[-4294967295]", "[3",     "3]",
        "[3x]",       "[0x5]",        "[2][3]",       "[3]]",          "[1]/",   "/",
        "[16777216]", "[4294967295]", "[4294967296]", "[007]",         "[5][+]", "[-]"};
    return mostlyFirst(folders, 2) + mostlyFirst(names, 2) + anyOf(indices);
}

std::string OddLogicLocations::further() {
    const Choices others = {
        "Latch=Q",  "Ram=B:BIT0", "Net=", "xNet=top/k_1/n", "net=top/k_1/n", "Net",  "Revision",
        "NetNet=n", ";",          "=",    "Net=n]",         "Net=[3]",       "Net=/"};
    return onceIn(4) ? anyOf(others) : "Net=" + net();
}

std::string OddLogicLocations::bitLine() {
    const std::vector<Choices> fields = {
        {"Bit"},
        {"1000000", "0", "18446744073709551615", "18446744073709551616", "-1", "12abc", "0x12",
         "abc", "+7", "-", "1.5", ""},
        {"0x00001a00", "1a01", "0X2B", "0xFfAa", "0x", "x1", "-1", "-0x10", "+0x1", "0x123456789",
         "0xffffffffffffffff", "0x10000000000000000", "0x10g", "g", "0x0x1", "00x1", "10:", ""},
        {"64", "0", "4294967295", "4294967296", "-1", "-4294967296", "+3", "0x20", "64abc", "abc",
         "007", "8,", ""},
        {"TILE_X1Y2", "DIE0", "Net=top/k_1/n", ";", "[", "0", ""},
        {"0", "1", "4294967295", "4294967296", "-1", "x", "0x1", "0Net=top/k_1/n", "3Net=n", "2;",
         ""}};
    const Choices separators = {" ", "  ", "\t", " \v", "\f ", "\r", bytes("\0"), ""};
    std::string result;
    for (const Choices& choices : fields) {
        result += mostlyFirst(choices, 10) + mostlyFirst(separators, 40);
    }
    for (std::size_t count = below(4); count > 0; --count) {
        result += further() + mostlyFirst(separators, 40);
    }
    if (onceIn(3)) {
        result.pop_back();
    }
    return result;
}

std::string OddLogicLocations::longLine() {
    std::string result = onceIn(4) ? "; " : bitLine() + " ";
    const std::size_t size = 2044 + below(6);
    if (onceIn(2)) {
        return result + std::string(size - result.size(), 'x');
    }
    // The last word stands across the place where a line that is too long is cut.
    const std::string word = " Net=top/k_1/n[1]";
    result += std::string(size - result.size() - below(word.size()), ' ');
    return result + word;
}

std::string OddLogicLocations::line() {
    const Choices others = {"; a comment",
                            ";Bit 1 0x1 1 TILE 0 Net=top/k_1/n",
                            "Revision 3",
                            "Bit 1 0x1 1 TILE 0 Revision Net=top/k_1/n",
                            "theRevisions",
                            "Bit",
                            "",
                            " ",
                            " ; a comment behind a blank",
                            " Bit 5 0x5 5 TILE 5 Net=top/k_1/n[5]"};
    const Choices strangers = {
        "word", "bit 1 0x1 1 TILE 0 Net=n", "Bits 1", "Revisio 3", "[n]", bytes("\0"), bytes("\0;"),
        "0x1"};
    const std::size_t kind = below(60);
    if (kind == 0) {
        return anyOf(strangers);
    }
    if (kind == 1) {
        return longLine();
    }
    return kind < 10 ? anyOf(others) : bitLine();
}

void OddLogicLocations::damage(std::string& text) {
    constexpr std::string_view odd("\0 \n;[]/=-xB\r\xFF", 13);
    if (!text.empty()) {
        text[below(text.size())] = odd[below(odd.size())];
    }
}

std::string OddLogicLocations::text() {
    const Choices starts = {"", " ", "\n", "\t", "\r\n", " \n"};
    const Choices ends = {"\n", "\r\n", "\n\n", "\n \t\n", "\n  ", " \n", bytes("\0\n"), ""};
    std::string result = mostlyFirst(starts, 20);
    for (std::size_t count = below(9); count > 0; --count) {
        result += line() + mostlyFirst(ends, 6);
    }
    if (!result.empty() && onceIn(3)) {
        result.pop_back();
    }
    if (onceIn(8)) {
        damage(result);
    }
    return result;
}

} // namespace consolidator::test
