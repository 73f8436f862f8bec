// Programs that link the library may have any locale. None of what is read or written follows it.

#include "consolidated/ConsolidatedFile.h"
#include "readers/HierarchyFile.h"
#include "shared/schemas/KernelDescription.h"
#include "tests/support/DriverRun.h"
#include "tests/support/SampleKernel.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <locale>
#include <ostream>
#include <sstream>
#include <string>

namespace consolidator::test {

namespace {

/// Numbers as nobody writes them: "1_2_3:5".
class OddNumbers final : public std::numpunct<char> {
protected:
    char do_decimal_point() const override { return ':'; }
    char do_thousands_sep() const override { return '_'; }
    std::string do_grouping() const override { return "\1"; }
    std::string do_truename() const override { return "yes"; }
};

/// Makes them those of all streams that begin meanwhile.
class OddLocale {
public:
    OddLocale() : before_(std::locale::global(std::locale(std::locale(), new OddNumbers))) {}
    ~OddLocale() { std::locale::global(before_); }
    OddLocale(const OddLocale&) = delete;
    OddLocale& operator=(const OddLocale&) = delete;

private:
    std::locale before_;
};

/// What `write` puts on a stream, which must be the same in the odd locale.
template <typename Write>
std::string sameText(Write write) {
    const auto text = [&] {
        std::ostringstream out;
        write(out);
        return out.str();
    };
    const std::string plain = text();
    const OddLocale odd;
    EXPECT_EQ(text(), plain);
    return plain;
}

struct Locale : testing::Test {
    const TemporaryDirectory directory;
    const std::string hierarchy =
        directory.write("system.hier", "version: 0.75\nscale_rows type: hls\n"
                                       "instance path: top/scale_rows_1\n");
    const std::string hls = directory.write("scale_rows.hls", "Begin Function scale_rows\n"
                                                              "RTL 2 state_2 (fsm_state2 == 1'b1)\n"
                                                              "local sum\n"
                                                              "at: scale.cpp:1234567\n"
                                                              "end sum_reg[1299:0] 1300\n"
                                                              "End Function scale_rows\n");
    const std::string xml =
        directory.write("kernel.xml", "<project><platform><device><core><kernel name='scale_rows'>"
                                      "<arg name='input_r' type='int' addressQualifier='1234'/>"
                                      "</kernel></core></device></platform></project>");
    const std::string locations = directory.write(
        "top.ll",
        "Bit 12345678 0x0012abcd 12345 TILE 0 Latch=Q Net=top/scale_rows_1/inst/sum_reg[1234]\n"
        "Bit 12345679 0x0012abcd 12346 TILE 0 Latch=Q Net=top/scale_rows_1/inst/sum_reg[1_0]\n");

    /// Makes a database, and returns its bytes and messages.
    std::string database() const {
        const CommandResult result =
            runDriver({"-c", "-f", directory.path("db"), "-p", "demo", "-h", hierarchy, "-s", hls,
                       "-k", xml, "-l", locations});
        EXPECT_EQ(result.status, 0);
        return result.out + result.err + directory.read("db");
    }
};

} // namespace

TEST_F(Locale, DoesNotShowInStreamsThatAreNotLookedAt) {
    std::ostringstream plain;
    plain << 1234.5;
    const OddLocale odd;
    std::ostringstream out;
    out << 1234.5;
    EXPECT_EQ(plain.str(), "1234.5");
    EXPECT_EQ(out.str(), "1_2_3_4:5"); // so the others would look
}

TEST_F(Locale, ChangesNoDatabase) {
    const std::string plain = database();
    EXPECT_NE(plain.find("\"Line\":1234567"), std::string::npos);
    EXPECT_NE(plain.find("[ 1223629, 12345]"), std::string::npos);
    const OddLocale odd;
    EXPECT_EQ(database(), plain);
}

TEST_F(Locale, ChangesNoJsonOfAKernel) {
    Kernel kernel = sampleKernel();
    BreakableCondition condition(BreakableCondition::FileLine, "a == b");
    condition.line = 4294967295U;
    condition.file = "scale.cpp";
    EXPECT_EQ(sameText([&](std::ostream& out) { condition.writeJson(out); }),
              "{ \"File\":\"scale.cpp\", \"Line\":4294967295, \"Cond\":\"a == b\"}");
    HardwareVariable net("net");
    net.setLocation(1234, 12345678, 87654321);
    kernel.addHardwareVariable(net);
    EXPECT_NE(
        sameText([&](std::ostream& out) { kernel.writeJson(out); }).find("[ 12345678, 87654321]"),
        std::string::npos);
}

TEST_F(Locale, ChangesNoHeader) {
    database();
    ConsolidatedFile file;
    EXPECT_TRUE(file.readExisting(directory.path("db")));
    EXPECT_EQ(sameText([&](std::ostream& out) { file.printHeader(out); }).substr(0, 25),
              "Magic number: 3203390164\n");
}

TEST_F(Locale, ChangesNoMessageOfAReader) {
    const std::string path = directory.write("new.hier", "version: 1234.5\n");
    EXPECT_EQ(sameText([&](std::ostream& out) {
                  HierarchyFile reader(path, out);
                  EXPECT_FALSE(reader.parse());
                  out << reader.diagnostic().stopped()->text;
              }),
              "Unsupported hierarchy file: " + path +
                  "\nVersion: 1234.5\nSupported Version: 1\n"
                  "version 1234.5 is above 1, the highest that is known");
}

TEST_F(Locale, ChangesNoKernelDescription) {
    const std::string written = sameText([&](std::ostream& out) {
        Mekto::Project project;
        project.readFile(xml);
        project.name = {"two\nlines", true};
        project.write(out);
    });
    EXPECT_NE(written.find("addressQualifier=\"1234\""), std::string::npos);
    EXPECT_NE(written.find("name=\"two&#10;lines\""), std::string::npos);
}

} // namespace consolidator::test
