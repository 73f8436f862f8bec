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
        KnownKernel scale;
        scale.name = "scale_rows";
        scale.instancePaths = {"top/k_1", "top/k_2"};
        scale.arguments = {{"n", "n_r", "int"}};
        scale.variables = {{"sum", "sum_reg", "int"}};
        database.kernels = {scale, stated};
        good = database.write();
    }

    using Find = std::function<Found(const std::string&)>;

    /// One run on every damage of a file. `name` is the file's, `other` the good file of this kind,
    /// which states one kernel, and `find` runs the reader alone.
    void expectGoodRuns(const std::string& option, const std::string& name,
                        const std::string& bytes, const std::string& otherName,
                        const std::string& other, const KnownKernel& otherKernel,
                        const Find& find) {
        const std::string path = run.directory.path(name);
        const std::string otherPath = run.directory.write(otherName, other);
        const auto check = [&](const std::string& what, const std::string& damaged) {
            if (HasFailure()) {
                return; // one damage at a time
            }
            SCOPED_TRACE(what);
            run.begin(what);
            run.directory.write("db", good);
            run.directory.write(name, damaged);
            const Found found = find(path);
            EXPECT_TRUE(isKnownMessage(found.messages)) << found.messages;
            NaiveDatabase expected = NaiveDatabase::read(good);
            for (const KnownKernel& kernel : found.kernels) {
                expected.merge(kernel);
            }
            expected.merge(otherKernel);
            run.expectRun({option, path, option, otherPath}, damaged.size(), 0, found.messages);
            run.expectDatabase(expected);
            run.expectAnotherRunToKeepAll();
        };
        check("undamaged", bytes);
        forEachDamage(bytes, 20000, check);
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
    expectGoodRuns("-h", "damaged.hier", bytes, "other.hier", "other type: ip\n",
                   {.name = "other", .type = 2}, foundIn<HierarchyFile>);
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
    KnownKernel kernel;
    kernel.name = "other";
    kernel.conditions = {{0, "== $i/kc_start 1'b1"}, {1, "== $i/kc_done 1'b1"}};
    expectGoodRuns("-k", "damaged.xml", bytes, "other.xml", other, kernel, foundIn<KernelFile>);
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
    expectGoodRuns("-s", "scale_rows.hls", bytes, "other.hls", "", {.name = "other"},
                   foundIn<HLSFile>);
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
    expectGoodRuns("-x", "damaged_auxiliary.xml", bytes, "other_auxiliary.xml",
                   "<vd:acceleratorMap vd:functionName=\"other\" >\n", {.name = "other"},
                   foundIn<AuxiliaryXMLFile>);
}

TEST_F(InputDamage, LogicLocations) {
    const std::string bytes =
        "; Logic locations\n"
        "Revision 3\n"
        "Bit 10 0x00001a00 128 TILE_X1Y2 0 Latch=Q Net=top/k_1/U0/sum_reg[0]\n"
        "Bit 11 0x00001a00 129 TILE_X1Y2 0 Latch=Q Net=top/k_1/U0/sum_reg[3]\n"
        "Bit 12 0x00001a01 130 TILE_X1Y2 0 Latch=Q Net=top/k_2/U0/n_r\n"
        "Bit 13 0x00001a01 131 TILE_X1Y2 0 Ram=B:BIT0\n";
    KnownKernel kernel;
    kernel.name = "scale_rows";
    kernel.registers = {{"/x/top/k_2/n_r", {{0, 0}, {7, 9}}}};
    expectGoodRuns("-l", "damaged.ll", bytes, "other.ll", "Bit 1 7 9 TILE 0 Net=x/top/k_2/n_r[1]\n",
                   kernel, [this](const std::string& path) { return foundInLogicLocations(path); });
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
    expectGoodRuns("-r", "damaged.rpt", bytes, "other.rpt", bytes, stated,
                   [this](const std::string& path) { return foundInRamReport(path); });
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
