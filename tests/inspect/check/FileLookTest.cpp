// What a look at the beginning of a file tells.

#include "inspect/check/FileLook.h"

#include "tests/support/ExampleProject.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>

namespace consolidator::inspect::test {

namespace {

using consolidator::test::exampleFolder;
using consolidator::test::TemporaryDirectory;

Content contentOfExample(const std::string& name) {
    return contentOf(FileLook::at(exampleFolder() + "/" + name).head);
}

TEST(FileLook, KnowsTheFilesOfTheExampleProject) {
    EXPECT_EQ(contentOfExample("system.hier"), Content(InputKind::Hierarchy));
    EXPECT_EQ(contentOfExample("kernel.xml"), Content(InputKind::KernelXml));
    EXPECT_EQ(contentOfExample("scale_rows.hls"), Content(InputKind::Hls));
    EXPECT_EQ(contentOfExample("checksum.hls"), Content(InputKind::Hls));
    EXPECT_EQ(contentOfExample("checksum_auxiliary.xml"), Content(InputKind::AuxiliaryXml));
    EXPECT_EQ(contentOfExample("top.ll"), Content(InputKind::LogicLocations));
    EXPECT_EQ(contentOfExample("ram_utilization.rpt"), Content(InputKind::RamReport));
    EXPECT_EQ(contentOfExample("program.dwarf"), Content(OtherContent::Binary));
}

TEST(FileLook, JudgesByTheFirstLineThatOnlyOneKindHas) {
    EXPECT_EQ(contentOf(""), Content(OtherContent::Unknown));
    EXPECT_EQ(contentOf("# a comment\n\nblend\n"), Content(OtherContent::Unknown));
    EXPECT_EQ(contentOf("blend\r\ntype: c"), Content(InputKind::Hierarchy));
    EXPECT_EQ(contentOf("instance path: a\nBit 1"), Content(InputKind::Hierarchy));
    EXPECT_EQ(contentOf("Bit rate\nBit 7 0x1"), Content(InputKind::LogicLocations));
    EXPECT_EQ(contentOf("RTL 1 s (x)"), Content(InputKind::Hls));
    EXPECT_EQ(contentOf("\xEF\xBB\xBF<?xml version=\"1.0\"?><component/>"),
              Content(OtherContent::Xml));
    EXPECT_EQ(contentOf("\xD4\xDA\xEF\xBE"), Content(OtherContent::Database));
}

TEST(FileLook, KnowsBinaryFiles) {
    EXPECT_EQ(contentOf(std::string("\x7F"
                                    "ELF\x02\x01\x01\0\0\0\0\0",
                                    12)),
              Content(OtherContent::Binary));
    EXPECT_EQ(contentOf(std::string("\xFF\xFE"
                                    "a\0b\0c\0d\0e\0",
                                    12)),
              Content(OtherContent::Unknown)); // a text
    EXPECT_EQ(contentOf(std::string("a\0b\0c\0", 6)),
              Content(OtherContent::Unknown)); // as many as may be
    EXPECT_EQ(contentOf("\xFF\xFF\xFF\xFF\xFF"), Content(OtherContent::Unknown));
}

TEST(FileLook, KnowsCompressedFiles) {
    EXPECT_EQ(compressionOf("\x1F\x8B\x08"), "gzip");
    EXPECT_EQ(compressionOf("PK\x03\x04"), "zip");
    EXPECT_EQ(compressionOf("BZh9"), "bzip2");
    EXPECT_EQ(compressionOf(std::string("\xFD\x37zXZ\0", 6)), "xz");
    EXPECT_EQ(compressionOf("\x28\xB5\x2F\xFD"), "zstd");
    EXPECT_EQ(compressionOf("\x1F"), "");
    EXPECT_EQ(compressionOf(""), "");
}

TEST(FileLook, KnowsByteOrderMarksAndLineEnds) {
    EXPECT_EQ(byteOrderMarkOf("\xEF\xBB\xBF#"), "UTF-8");
    EXPECT_EQ(byteOrderMarkOf("\xFF\xFE#"), "UTF-16");
    EXPECT_EQ(byteOrderMarkOf("\xFE\xFF"), "UTF-16");
    EXPECT_EQ(byteOrderMarkOf("\xEF\xBB"), "");
    EXPECT_TRUE(hasCarriageReturns("a\r\nb\n"));
    EXPECT_FALSE(hasCarriageReturns("a\nb\r\n"));
    EXPECT_FALSE(hasCarriageReturns("\n"));
    EXPECT_FALSE(hasCarriageReturns("\r"));
}

TEST(FileLook, TellsFoldersAndMissingFiles) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(FileLook::at(directory.path("")).isFolder);
    EXPECT_FALSE(FileLook::at(directory.path("missing")).isRegular);
    const FileLook look = FileLook::at(directory.write("a", std::string(70000, 'x')));
    EXPECT_TRUE(look.isRegular);
    EXPECT_EQ(look.size, 70000U);
    EXPECT_EQ(look.head, std::string(FileLook::longestHead, 'x'));
}

TEST(FileLook, TellsTheNullDevice) {
    const TemporaryDirectory directory;
    EXPECT_TRUE(FileLook::at("/dev/null").isEmptyDevice);
    EXPECT_FALSE(FileLook::at("/dev/zero").isEmptyDevice);
    EXPECT_FALSE(FileLook::at(directory.write("a", "")).isEmptyDevice);
}

TEST(FileLook, MakesPathsOfOneFileTheSame) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("a", "");
    EXPECT_EQ(wholePathOf(directory.path("./a")), wholePathOf(path));
    EXPECT_EQ(wholePathOf("no/such/../file"), "no/such/../file");
}

TEST(FileLook, NamesTheOptions) {
    EXPECT_EQ(optionFor(InputKind::Dwarf), "-d");
    EXPECT_EQ(optionFor(InputKind::RamReport), "-r");
    EXPECT_EQ(optionFor(OtherContent::Database), "-f");
    EXPECT_EQ(optionFor(OtherContent::Xml), "");
}

} // namespace

} // namespace consolidator::inspect::test
