#include "tests/support/OddLogicLocations.h"

#include <string_view>

namespace consolidator::test {

using namespace std::string_view_literals;

Kernel OddLogicLocations::kernel(const std::string& name) {
    const Choices paths = {"top/k_1", "top/k_10", "/top/k_1", "",       "k_1/inst", "top",
                           "/",       "inst",     "x",        "/n",     "n",        "top/k_1[2]",
                           "k_",      "//",       "///",      "op/k_1", "p/",       "k",
                           "/k_1/",   "k_2",      "top/k_1/n"};
    const Choices names = {"n",  "n_r", "n",    "state", "",      "a[2]_x",
                           "n]", "k_1", "n[1]", "n[2",   "Net=n", "top"};
    Kernel kernel;
    kernel.setName(name);
    for (std::size_t count = random_.below(4); count > 0; --count) {
        kernel.addInstancePath(random_.mostlyFirst(paths, 2));
    }
    for (std::size_t count = random_.below(4); count > 0; --count) {
        kernel.addArgument("argument" + std::to_string(count), random_.mostlyFirst(names, 2),
                           "int");
    }
    for (std::size_t count = random_.below(4); count > 0; --count) {
        kernel.addVariable("variable" + std::to_string(count), random_.mostlyFirst(names, 2),
                           "int");
    }
    if (random_.onceIn(4)) {
        kernel.addHardwareLocation("/top/k_1/n", 2, 7, 9);
        kernel.addHardwareVariable(HardwareVariable("/n"));
    }
    return kernel;
}

std::vector<Kernel> OddLogicLocations::kernels() {
    std::vector<Kernel> result;
    const std::size_t most =
        random_.onceIn(10) ? 60 : 4; // now and then, many that have much in common
    for (std::size_t count = random_.below(most) + random_.below(3); count > 0; --count) {
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
    return random_.mostlyFirst(folders, 2) + random_.mostlyFirst(names, 2) + random_.anyOf(indices);
}

std::string OddLogicLocations::further() {
    const Choices others = {
        "Latch=Q",  "Ram=B:BIT0", "Net=", "xNet=top/k_1/n", "net=top/k_1/n", "Net",  "Revision",
        "NetNet=n", ";",          "=",    "Net=n]",         "Net=[3]",       "Net=/"};
    return random_.onceIn(4) ? random_.anyOf(others) : "Net=" + net();
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
    const Choices separators = {" ", "  ", "\t", " \v", "\f ", "\r", "\0"sv, ""};
    std::string result;
    for (const Choices& choices : fields) {
        result += random_.mostlyFirst(choices, 10) + random_.mostlyFirst(separators, 40);
    }
    for (std::size_t count = random_.below(4); count > 0; --count) {
        result += further() + random_.mostlyFirst(separators, 40);
    }
    if (random_.onceIn(3)) {
        result.pop_back();
    }
    return result;
}

std::string OddLogicLocations::longLine() {
    std::string result = random_.onceIn(4) ? "; " : bitLine() + " ";
    const std::size_t size = 2044 + random_.below(6);
    if (random_.onceIn(2)) {
        return result + std::string(size - result.size(), 'x');
    }
    // The last word stands across the place where a line that is too long is cut.
    const std::string word = " Net=top/k_1/n[1]";
    result += std::string(size - result.size() - random_.below(word.size()), ' ');
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
        "word", "bit 1 0x1 1 TILE 0 Net=n", "Bits 1", "Revisio 3", "[n]", "\0"sv, "\0;"sv, "0x1"};
    const std::size_t kind = random_.below(60);
    if (kind == 0) {
        return random_.anyOf(strangers);
    }
    if (kind == 1) {
        return longLine();
    }
    return kind < 10 ? random_.anyOf(others) : bitLine();
}

void OddLogicLocations::damage(std::string& text) {
    constexpr std::string_view odd("\0 \n;[]/=-xB\r\xFF", 13);
    if (!text.empty()) {
        text[random_.below(text.size())] = odd[random_.below(odd.size())];
    }
}

std::string OddLogicLocations::text() {
    const Choices starts = {"", " ", "\n", "\t", "\r\n", " \n"};
    const Choices ends = {"\n", "\r\n", "\n\n", "\n \t\n", "\n  ", " \n", "\0\n"sv, ""};
    std::string result = random_.mostlyFirst(starts, 20);
    for (std::size_t count = random_.below(9); count > 0; --count) {
        result += line() + random_.mostlyFirst(ends, 6);
    }
    if (!result.empty() && random_.onceIn(3)) {
        result.pop_back();
    }
    if (random_.onceIn(8)) {
        damage(result);
    }
    return result;
}

} // namespace consolidator::test
