#include "tests/support/ExampleProject.h"

#include "tests/support/Bytes.h"

#include <cstdint>

namespace consolidator::test {

namespace {

/// A register whose bits lie one behind the other in the same frame.
KnownRegister registerAt(const std::string& net, std::uint32_t address, std::uint32_t firstOffset,
                         std::uint32_t bits) {
    KnownRegister result{net, {}};
    for (std::uint32_t bit = 0; bit < bits; ++bit) {
        result.places.push_back({address, firstOffset + bit});
    }
    return result;
}

KnownKernel scaleRows() {
    // No line of the second instance names bit 6 of sum_reg.
    KnownRegister secondSum = registerAt("/top/region_0/scale_rows_2/U0/sum_reg", 0x2a01, 160, 8);
    secondSum.places[6] = {0, 0};
    return {.name = "scale_rows",
            .type = 4,
            .instancePaths = {"top/region_0/scale_rows_1", "top/region_0/scale_rows_2"},
            .arguments = {{"input", "input_r", "int*", 64},
                          {"output", "output_r", "int*", 64},
                          {"rows", "rows", "unsigned char", 8},
                          {"gain", "gain", "float", 32}},
            .variables = {{"row", "row_reg", "int"}, {"sum", "sum_reg", "int"}},
            .registers = {registerAt("/top/region_0/scale_rows_1/U0/row_reg", 0x1a00, 128, 4),
                          registerAt("/top/region_0/scale_rows_1/U0/sum_reg", 0x1a01, 160, 8),
                          registerAt("/top/region_0/scale_rows_1/U0/rows", 0x1a02, 0, 8),
                          registerAt("/top/region_0/scale_rows_2/U0/row_reg", 0x2a00, 128, 4),
                          secondSum},
            .conditions = {{0, "== 1'b1 $i/kc_start"},
                           {1, "== 1'b1 $i/kc_done"},
                           {2, "== 1'b1 $i/fsm_state2", 14, "scale_rows.cpp"}},
            .pathSuffix = "/U0"};
}

KnownKernel checksum() {
    return {.name = "checksum",
            .type = 1,
            .instancePaths = {"top/region_1/checksum_1"},
            .arguments = {{"in", "in_r", "int"},
                          {"length", "length_r", "int"},
                          {"result", "result", "int"}},
            .variables = {{"crc", "crc_q", "int"}},
            .registers = {registerAt("/top/region_1/checksum_1/inst/crc_q", 0x3a00, 200, 4),
                          registerAt("/top/region_1/checksum_1/inst/result", 0x3a01, 17, 1)},
            .conditions = {{2, "== 1'b1 $i/last_word", 21, "checksum.cpp"}}};
}

} // namespace

std::string exampleFolder() {
    return EXAMPLES_DIRECTORY;
}

std::vector<KnownKernel> exampleKernels() {
    return {scaleRows(), checksum()};
}

std::string exampleDwarf() {
    // One compile unit, scale_rows.cpp, and the abbreviation that it uses.
    return bytes("\x18\0\0\0\x04\0\0\0\0\0\x08"
                 // abbreviation 1: name, language
                 "\x01scale_rows.cpp\0\x04"
                 // abbreviation 1: compile unit without children, name a text, language a byte
                 "\x01\x11\0\x03\x08\x13\x0b\0\0\0");
}

std::string exampleDatabase() {
    return DatabaseBuilder()
        .section(0, "accelerator")
        .section(1, exampleDwarf())
        .section(3, knownJson(exampleKernels()))
        .section(2, knownKernelData(exampleKernels()))
        .bytes();
}

} // namespace consolidator::test
