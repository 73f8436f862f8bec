// Input files of every kind, damaged in every way: a run takes what its reader finds, says nothing
// but what readers say, and takes in all other inputs.

#include "consolidated/ConsolidatedFile.h"
#include "model/RAMFile.h"
#include "readers/AuxiliaryXMLFile.h"
#include "readers/HLSFile.h"
#include "readers/HierarchyFile.h"
#include "readers/KernelFile.h"
#include "readers/LLFile.h"
#include "tests/damage/DamagedRun.h"
#include "tests/support/Damage.h"
#include "tests/support/Kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

/// What one input gave when its reader ran alone.
struct Found {
    std::vector<KnownKernel> kernels;
    std::string messages;
};

Found foundBy(InputFile& reader, std::ostringstream& errors) {
    Found found;
    bool usable = false;
    try {
        usable = reader.isOpen() && reader.parse();
    } catch (const std::out_of_range&) {
        usable = false; // the auxiliary reader's way to give up on an attribute
    }
    for (const Kernel& kernel : reader.kernels()) {
        if (usable) {
            found.kernels.push_back(knownFrom(kernel));
        }
    }
    found.messages = errors.str();
    return found;
}

template <typename Reader>
Found foundIn(const std::string& path) {
    std::ostringstream errors;
    Reader reader(path, errors);
    return foundBy(reader, errors);
}

/// Whether readers may say this; each line ends with a newline.
bool isKnownMessage(const std::string& messages) {
    constexpr std::array<std::string_view, 5> starts = {
        "Parse error\n", "Unsupported hierarchy file: ", "Version: ", "Supported Version: 1\n",
        "Could not parse kernel file\n"};
    std::string_view rest = messages;
    while (!rest.empty()) {
        if (std::ranges::none_of(starts, [&](auto start) { return rest.starts_with(start); }) ||
            rest.find('\n') == std::string_view::npos) {
            return false;
        }
        rest.remove_prefix(rest.find('\n') + 1);
    }
    return true;
}

/// Tests that give a damaged file and a good one of the same kind to a database of two kernels.
struct InputDamage : testing::Test {
    InputDamage() {
        NaiveDatabase database;
        database.kernels = {scale, stated};
        good = database.write();
    }

    using Find = std::function<Found(const std::string&)>;

    /// A file to be damaged, a good one of the same kind behind it, which states one kernel, and
    /// how to run the reader alone.
    struct Input {
        std::string option;
        std::string name;
        std::string bytes;
        std::vector<KnownKernel> kernels; ///< What the reader must find in the undamaged file.
        std::string otherName;
        std::string other;
        KnownKernel otherKernel;
        Find find;
    };

    /// One run on every damage of the file.
    void expectGoodRuns(const Input& input) {
        expectFoundUndamaged(input);
        const std::string path = run.directory.path(input.name);
        const std::string otherPath = run.directory.write(input.otherName, input.other);
        const auto check = [&](const std::string& what, const std::string& damaged) {
            if (HasFailure()) {
                return; // one damage at a time
            }
            SCOPED_TRACE(what);
            run.begin(what);
            run.directory.write("db", good);
            run.directory.write(input.name, damaged);
            const Found found = input.find(path);
            EXPECT_TRUE(isKnownMessage(found.messages)) << found.messages;
            NaiveDatabase expected = NaiveDatabase::read(good);
            for (const KnownKernel& kernel : found.kernels) {
                expected.merge(kernel);
            }
            expected.merge(input.otherKernel);
            run.expectRun({input.option, path, input.option, otherPath}, damaged.size(), 0,
                          found.messages);
            run.expectDatabase(expected);
            run.expectAnotherRunToKeepAll();
        };
        check("undamaged", input.bytes);
        forEachDamage(input.bytes, 20000, check);
    }

    /// What is found in damaged files is the reader's own word; so what it finds in the whole one
    /// is compared with what was written down by hand.
    void expectFoundUndamaged(const Input& input) {
        run.directory.write("db", good);
        const Found found = input.find(run.directory.write(input.name, input.bytes));
        EXPECT_EQ(knownKernelData(found.kernels), knownKernelData(input.kernels));
        EXPECT_EQ(found.messages, "");
    }

    /// For readers that need to know the project's kernels.
    Found foundInLogicLocations(const std::string& path) const {
        ConsolidatedFile database;
        database.readExisting(run.db);
        std::ostringstream errors;
        LLFile reader(path, errors);
        reader.setKernels(database.kernels());
        return foundBy(reader, errors);
    }

    Found foundInRamReport(const std::string& path) const {
        ConsolidatedFile database;
        database.readExisting(run.db);
        std::ostringstream errors;
        RAMFile reader(path, database.kernels(), errors);
        return foundBy(reader, errors);
    }

    DamagedRun run;
    KnownKernel stated = run.stated;
    const KnownKernel scale{.name = "scale_rows",
                            .instancePaths = {"top/k_1", "top/k_2"},
                            .arguments = {{"n", "n_r", "int"}},
                            .variables = {{"sum", "sum_reg", "int"}}};
    std::string good;
};

} // namespace

TEST_F(InputDamage, Hierarchy) {
    const std::string bytes = "# Written by the linker.\n"
                              "version: 1.0\n"
                              "scale_rows\n"
                              "type: hls\n"
                              "instance path: top/k_1\n"
                              "instance path: top/region_0/k_3\n"
                              "\n"
                              "blend\n"
                              "type: c\n"
                              "instance path: top/b_1\n"
                              "histogram type: clc\n";
    expectGoodRuns({.option = "-h",
                    .name = "damaged.hier",
                    .bytes = bytes,
                    .kernels = {{.name = "scale_rows",
                                 .type = 4,
                                 .instancePaths = {"top/k_1", "top/region_0/k_3"}},
                                {.name = "blend", .type = 1, .instancePaths = {"top/b_1"}},
                                {.name = "histogram", .type = 0}},
                    .otherName = "other.hier",
                    .other = "other type: ip\n",
                    .otherKernel = {.name = "other", .type = 2},
                    .find = foundIn<HierarchyFile>});
}

TEST_F(InputDamage, KernelDescription) {
    const std::string bytes =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<project name=\"demo\"><platform name=\"b\"><version major=\"1\" minor=\"0\"/>\n"
        "<device name=\"d\"><core name=\"c\"><!-- kernels -->\n"
        "<kernel name=\"scale_rows\" language=\"c\"><port name=\"M\" mode=\"master\"/>\n"
        "<arg name=\"input_r\" addressQualifier=\"1\" type=\"int*\"/>\n"
        "<arg name=\"gain\" addressQualifier=\"0\" type=\"float\"></arg></kernel>\n"
        "<kernel name=\"a&amp;b\"><arg name=\"&#65;\" type='char'/></kernel>\n"
        "</core></device></platform></project>\n";
    const std::string other = "<project><platform><device><core><kernel name=\"other\"/>"
                              "</core></device></platform></project>";
    const std::vector<KnownCondition> conditions = {{0, "== $i/kc_start 1'b1"},
                                                    {1, "== $i/kc_done 1'b1"}};
    const KnownVariable input{"input", "input_r", "int*"};
    const KnownVariable gain{"gain", "gain", "float"};
    expectGoodRuns(
        {.option = "-k",
         .name = "damaged.xml",
         .bytes = bytes,
         // A kernel has the arguments of those before it, too.
         .kernels = {{.name = "scale_rows", .arguments = {input, gain}, .conditions = conditions},
                     {.name = "a&b",
                      .arguments = {input, gain, {"A", "A", "char"}},
                      .conditions = conditions}},
         .otherName = "other.xml",
         .other = other,
         .otherKernel = {.name = "other", .conditions = conditions},
         .find = foundIn<KernelFile>});
}

TEST_F(InputDamage, HlsMetadata) {
    const std::string bytes = "Begin Function scale_rows\n"
                              "RTL 1 state_1 (1'b1 == 1'b1)\n"
                              "local row\n"
                              "at: scale.cpp:12\n"
                              "end row_reg[3:0] 4\n"
                              "\n"
                              "RTL 2 state_2 (fsm_state2 == 1'b1)\n"
                              "local sum\n"
                              "at: scale.cpp:14\n"
                              "reg: sum_reg[7:0]\n"
                              "  a loop\n"
                              "end sum_reg[7:0] 8\n"
                              "End Function scale_rows\n";
    expectGoodRuns(
        {.option = "-s",
         .name = "scale_rows.hls",
         .bytes = bytes,
         .kernels = {{.name = "scale_rows",
                      .variables = {{"row", "row_reg", "int"}, {"sum", "sum_reg", "int"}},
                      .conditions = {{2, "(1'b1 == 1'b1)", 12, "scale.cpp"},
                                     {2, "(fsm_state2 == 1'b1)", 14, "scale.cpp"}}}},
         .otherName = "other.hls",
         .other = "",
         .otherKernel = {.name = "other"},
         .find = foundIn<HLSFile>});
}

TEST_F(InputDamage, AuxiliaryXml) {
    const std::string bytes =
        "<?xml version=\"1.0\"?>\n"
        "<vd:component>\n"
        "  <vd:acceleratorMap vd:functionName=\"scale_rows\" vd:componentRef=\"s\" >\n"
        "    <vd:arg vd:originalName=\"in_r\" vd:busTypeRef=\"\"acc_fifo\" />\n"
        "    <vd:arg vd:originalName=\"length\" vd:busTypeRef=\"acc_scalar\" />\n"
        "  </vd:acceleratorMap>\n"
        "</vd:component>\n";
    expectGoodRuns(
        {.option = "-x",
         .name = "damaged_auxiliary.xml",
         .bytes = bytes,
         .kernels = {{.name = "scale_rows",
                      .arguments = {{"in", "in_r", "int*"}, {"length", "length", "int"}}}},
         .otherName = "other_auxiliary.xml",
         .other = "<vd:acceleratorMap vd:functionName=\"other\" >\n",
         .otherKernel = {.name = "other"},
         .find = foundIn<AuxiliaryXMLFile>});
}

TEST_F(InputDamage, LogicLocations) {
    const std::string bytes =
        "; Logic locations\n"
        "Revision 3\n"
        "Bit 10 0x00001a00 128 TILE_X1Y2 0 Latch=Q Net=top/k_1/U0/sum_reg[0]\n"
        "Bit 11 0x00001a00 129 TILE_X1Y2 0 Latch=Q Net=top/k_1/U0/sum_reg[3]\n"
        "Bit 12 0x00001a01 130 TILE_X1Y2 0 Latch=Q Net=top/k_2/U0/n_r\n"
        "Bit 13 0x00001a01 131 TILE_X1Y2 0 Ram=B:BIT0\n";
    KnownKernel located = scale;
    located.registers = {{"/top/k_1/U0/sum_reg", {{0x1a00, 128}, {0, 0}, {0, 0}, {0x1a00, 129}}},
                         {"/top/k_2/U0/n_r", {{0x1a01, 130}}}};
    expectGoodRuns(
        {.option = "-l",
         .name = "damaged.ll",
         .bytes = bytes,
         .kernels = {located, stated},
         .otherName = "other.ll",
         .other = "Bit 1 7 9 TILE 0 Net=x/top/k_2/n_r[1]\n",
         .otherKernel = {.name = "scale_rows", .registers = {{"/x/top/k_2/n_r", {{0, 0}, {7, 9}}}}},
         .find = [this](const std::string& path) { return foundInLogicLocations(path); }});
}

TEST_F(InputDamage, RamReport) {
    const std::string bytes = "3. Memory Utilization - Inferred\n"
                              "8. Block Ram / URAM Memory Power - Instantiated\n"
                              "\n"
                              "3. Memory Utilization - Inferred\n"
                              "--------\n"
                              "| Memory Name | Type |\n"
                              "| top/k_1/buffer_reg | RAMB18 | 1024 |\n"
                              "| top/k_9/buffer_reg | LUT | 16 |\n"
                              "4. Memory Performance - Inferred\n"
                              "6. Memory Utilization - Instantiated\n"
                              "| top/k_2/table | RAMB36 |\n"
                              "7. Memory Utilization - Instantiated\n";
    expectGoodRuns({.option = "-r",
                    .name = "damaged.rpt",
                    .bytes = bytes,
                    .kernels = {},
                    .otherName = "other.rpt",
                    .other = bytes,
                    .otherKernel = stated,
                    .find = [this](const std::string& path) { return foundInRamReport(path); }});
}

TEST_F(InputDamage, Dwarf) {
    const std::string bytes = "\x7f"
                              "dwarf metadata\n";
    const std::string path = run.directory.path("dwarf");
    forEachDamage(bytes, 20000, [&](const std::string& what, const std::string& damaged) {
        if (HasFailure()) {
            return;
        }
        SCOPED_TRACE(what);
        run.begin(what);
        run.directory.write("db", good);
        run.directory.write("dwarf", damaged);
        NaiveDatabase expected = NaiveDatabase::read(good);
        expected.addDwarf(damaged);
        expected.merge(run.stated);
        run.expectRun({"-d", path, "-h", run.hierarchy}, damaged.size());
        run.expectDatabase(expected);
        run.expectAnotherRunToKeepAll();
    });
}

} // namespace consolidator::test
