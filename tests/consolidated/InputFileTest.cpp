// The base of all readers, and how the consolidated file runs a reader and takes its kernels.

#include "consolidated/InputFile.h"

#include "consolidated/ConsolidatedFile.h"
#include "tests/support/Kernels.h"
#include "tests/support/ReaderFindings.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

/// A reader whose parse() is given by the test, with the base's insides in the open.
class FakeReader : public InputFile {
public:
    using Parse = std::function<bool(FakeReader&)>;

    explicit FakeReader(Parse parse)
        : InputFile(std::make_unique<std::stringbuf>("content")), parse_(std::move(parse)) {}
    explicit FakeReader(const std::string& path, std::ostream& errors = std::cerr)
        : InputFile(path, errors) {}
    explicit FakeReader(std::unique_ptr<std::streambuf> source) : InputFile(std::move(source)) {}

    bool parse() override { return parse_(*this); }

    using InputFile::diagnostic_;
    using InputFile::errors_;
    using InputFile::kernels_;
    using InputFile::line;
    using InputFile::stop;
    using InputFile::stream_;
    using InputFile::version_;

private:
    Parse parse_;
};

/// A reader that finds these kernels and then ends as `result` says.
FakeReader readerOf(std::vector<std::string> names, bool result = true) {
    return FakeReader([names = std::move(names), result](FakeReader& reader) {
        for (const std::string& name : names) {
            reader.kernels_.push_back(kernelNamed(name));
        }
        return result;
    });
}

std::unique_ptr<std::streambuf> textOf(const std::string& text) {
    return std::make_unique<std::stringbuf>(text);
}

TEST(InputFile, OpensAFileForReading) {
    const TemporaryDirectory directory;
    FakeReader reader(directory.write("input", "first second"));
    EXPECT_TRUE(reader.isOpen());
    EXPECT_EQ(reader.fileName(), directory.path("input"));
    std::string word;
    reader.stream_ >> word;
    EXPECT_EQ(word, "first");
    EXPECT_TRUE(reader.isOpen());
}

TEST(InputFile, HasNoVersionNoKernelsAndNoRemarksAtFirst) {
    const TemporaryDirectory directory;
    const FakeReader reader(directory.write("input", "content"));
    EXPECT_EQ(reader.version(), -1.0F);
    EXPECT_THAT(reader.kernels(), IsEmpty());
    EXPECT_EQ(reader.diagnostic().stopped(), std::nullopt);
    EXPECT_THAT(reader.diagnostic().remarks(), IsEmpty());
}

TEST(InputFile, IsNotOpenWhenTheFileIsMissing) {
    const TemporaryDirectory directory;
    const FakeReader reader(directory.path("missing"));
    EXPECT_FALSE(reader.isOpen());
    EXPECT_EQ(reader.fileName(), directory.path("missing"));
    EXPECT_EQ(reader.diagnostic().stopped(),
              stopAt(0, "cannot be opened: No such file or directory"));
}

TEST(InputFile, KeepsThePathAsItWasGiven) {
    const FakeReader reader("./no/such/../file");
    EXPECT_EQ(reader.fileName(), "./no/such/../file");
}

TEST(InputFile, IsOpenOnAnEmptyFileUntilItsEndIsMet) {
    const TemporaryDirectory directory;
    FakeReader reader(directory.write("empty", ""));
    EXPECT_TRUE(reader.isOpen());
    EXPECT_EQ(reader.stream_.get(), std::char_traits<char>::eof());
    EXPECT_FALSE(reader.isOpen());
}

TEST(InputFile, IsNotOpenAfterAReadingHasFailed) {
    FakeReader reader(textOf("word"));
    int number = 0;
    reader.stream_ >> number;
    EXPECT_FALSE(reader.isOpen());
}

TEST(InputFile, FailsToReadADirectory) {
    const TemporaryDirectory directory;
    FakeReader reader(directory.path(""));
    std::string word;
    reader.stream_ >> word;
    EXPECT_TRUE(reader.stream_.fail());
    EXPECT_FALSE(reader.isOpen());
}

TEST(InputFile, ReadsATextInMemoryWithoutAFileName) {
    FakeReader reader(textOf("top/scale_rows_1"));
    EXPECT_TRUE(reader.isOpen());
    EXPECT_EQ(reader.fileName(), std::nullopt);
    std::string word;
    reader.stream_ >> word;
    EXPECT_EQ(word, "top/scale_rows_1");
}

TEST(InputFile, KnowsTheLineThatItsStreamHasReached) {
    FakeReader reader(textOf("a\nb\n\nc"));
    std::string word;
    EXPECT_EQ(reader.line(), 1U);
    reader.stream_ >> word >> word;
    EXPECT_EQ(reader.line(), 2U);
    reader.stream_ >> word;
    EXPECT_EQ(word, "c");
    EXPECT_EQ(reader.line(), 4U);
}

TEST(InputFile, ShowsTheVersionThatAReaderFinds) {
    FakeReader reader(textOf("0.5"));
    reader.stream_ >> reader.version_;
    EXPECT_EQ(reader.version(), 0.5F);
}

TEST(InputFile, PassesMessagesToTheGivenStream) {
    const TemporaryDirectory directory;
    std::ostringstream errors;
    FakeReader reader(directory.write("input", ""), errors);
    reader.errors_ << "Parse error";
    EXPECT_EQ(errors.str(), "Parse error");
}

TEST(InputFile, StopsWithFalseAndTheReason) {
    FakeReader reader(textOf(""));
    EXPECT_FALSE(reader.stop(12, "expected a number"));
    EXPECT_EQ(reader.diagnostic().stopped(), stopAt(12, "expected a number"));
}

TEST(InputFile, TriesToParse) {
    EXPECT_TRUE(readerOf({"a"}).tryToParse());
    EXPECT_FALSE(readerOf({"a"}, false).tryToParse());

    FakeReader throwing([](FakeReader&) -> bool { throw std::out_of_range("too short"); });
    EXPECT_FALSE(throwing.tryToParse());
    EXPECT_EQ(throwing.diagnostic().stopped(), stopAt(0, "too short"));

    FakeReader exhausted([](FakeReader&) -> bool { throw std::bad_alloc(); });
    EXPECT_THROW(exhausted.tryToParse(), std::bad_alloc);
}

TEST(AddInputFile, MergesTheKernelsInTheirOrder) {
    ConsolidatedFile database;
    FakeReader reader = readerOf({"scale_rows", "checksum", "blend"});
    database.addInputFile(reader);
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("scale_rows", "checksum", "blend"));
}

TEST(AddInputFile, MergesByName) {
    ConsolidatedFile database;
    FakeReader reader = readerOf({"scale_rows", "checksum", "scale_rows"});
    database.addInputFile(reader);
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("scale_rows", "checksum"));
}

TEST(AddInputFile, AddsNothingWhenTheReaderFailsThoughItFoundKernels) {
    ConsolidatedFile database;
    FakeReader reader = readerOf({"scale_rows"}, false);
    database.addInputFile(reader);
    EXPECT_THAT(reader.kernels(), SizeIs(1));
    EXPECT_THAT(database.kernels(), IsEmpty());
}

TEST(AddInputFile, AddsNothingWhenTheReaderThrows) {
    ConsolidatedFile database;
    FakeReader reader([](FakeReader& self) {
        self.kernels_.push_back(kernelNamed("scale_rows"));
        return std::string().at(1) == 'x'; // throws std::out_of_range
    });
    EXPECT_NO_THROW(database.addInputFile(reader));
    EXPECT_THAT(reader.kernels(), SizeIs(1));
    EXPECT_THAT(database.kernels(), IsEmpty());
}

TEST(AddInputFile, GoesOnWithTheNextReaderAfterOneThatCannotBeUsed) {
    ConsolidatedFile database;
    FakeReader throwing([](FakeReader&) -> bool { throw std::out_of_range("position"); });
    FakeReader failing = readerOf({"lost"}, false);
    FakeReader good = readerOf({"checksum"});
    database.addInputFile(throwing);
    database.addInputFile(failing);
    database.addInputFile(good);
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("checksum"));
}

TEST(AddInputFile, DoesNotParseAReaderThatIsNotOpen) {
    ConsolidatedFile database;
    int parsed = 0;
    FakeReader reader([&parsed](FakeReader&) {
        ++parsed;
        return true;
    });
    reader.stream_.setstate(std::ios::failbit);
    database.addInputFile(reader);
    EXPECT_EQ(parsed, 0);
    EXPECT_THAT(database.kernels(), IsEmpty());
}

TEST(AddInputFile, DoesNotParseAReaderWhoseFileIsMissing) {
    const TemporaryDirectory directory;
    ConsolidatedFile database;
    FakeReader reader(directory.path("missing")); // parsing it would throw std::bad_function_call
    database.addInputFile(reader);
    EXPECT_EQ(reader.diagnostic().stopped()->text, "cannot be opened: No such file or directory");
    EXPECT_THAT(database.kernels(), IsEmpty());
}

// A reader may start from a copy of the project's kernels.
TEST(AddInputFile, MergesWhatAReaderThatIsNotOpenHadBefore) {
    ConsolidatedFile database;
    FakeReader reader = readerOf({});
    reader.kernels_.push_back(kernelNamed("checksum"));
    reader.stream_.setstate(std::ios::failbit);
    database.addInputFile(reader);
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("checksum"));
}

TEST(AddInputFile, AsksTheReaderItselfWhetherItIsOpen) {
    class Closed final : public FakeReader {
    public:
        using FakeReader::FakeReader;
        bool isOpen() const override { return false; }
    };
    ConsolidatedFile database;
    int parsed = 0;
    Closed reader([&parsed](FakeReader&) {
        ++parsed;
        return true;
    });
    database.addInputFile(reader);
    EXPECT_EQ(parsed, 0);
}

TEST(AddInputFile, ChangesNothingWithAReaderThatFindsNothing) {
    ConsolidatedFile database;
    database.mergeKernel(kernelNamed("scale_rows"));
    FakeReader reader = readerOf({});
    database.addInputFile(reader);
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("scale_rows"));
}

TEST(AddInputFile, TakesTheKernelsOverFromTheReader) {
    ConsolidatedFile database;
    FakeReader reader = readerOf({"scale_rows", "checksum"});
    database.addInputFile(reader);
    EXPECT_THAT(reader.kernels(), IsEmpty());
    EXPECT_THAT(namesOf(database.kernels()), ElementsAre("scale_rows", "checksum"));
}

} // namespace

} // namespace consolidator::test
