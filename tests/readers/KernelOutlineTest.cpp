// What the kernel description reader takes from documents that stream by: the same as stands in
// their trees, and no more than it may hold.

#include "readers/KernelOutline.h"

#include "readers/KernelFile.h"
#include "shared/schemas/KernelDescription.h"
#include "tests/support/Bytes.h"
#include "tests/support/MemoryFile.h"
#include "tests/support/PlainKernelDescription.h"
#include "tests/support/RandomDocuments.h"
#include "tests/support/Repeated.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

/// What a document gives.
struct Taken {
    bool succeeded = true;
    std::vector<std::string> kernels = {}; ///< Their binary forms.
    std::uint64_t line = 0;                ///< Where and why reading stopped.
    std::string reason = {};

    bool operator==(const Taken&) const = default;
};

void PrintTo(const Taken& taken, std::ostream* out) {
    *out << taken.succeeded << " line " << taken.line << ' ' << taken.reason << '\n'
         << testing::PrintToString(taken.kernels);
}

Taken takenByReader(const std::string& document) {
    std::ostringstream errors;
    KernelFile reader(std::make_unique<std::stringbuf>(document), errors);
    Taken taken{.succeeded = reader.parse()};
    for (const Kernel& kernel : reader.kernels()) {
        taken.kernels.push_back(binaryForm(kernel));
    }
    if (reader.diagnostic().stopped()) {
        taken.line = reader.diagnostic().stopped()->line;
        taken.reason = reader.diagnostic().stopped()->text;
    }
    EXPECT_EQ(errors.str(), taken.succeeded ? "" : "Could not parse kernel file\n");
    return taken;
}

Taken takenFromTree(const std::string& document) {
    Mekto::Project project;
    try {
        project.readMemory(document);
    } catch (const lmx60::c_lmx_reader_exception& exception) {
        const bool isRoot = exception.code() == lmx60::ErrorCode::UnexpectedRoot;
        return {.succeeded = false,
                .line = exception.line(),
                .reason = (isRoot ? "the root element is " : "") + exception.reason()};
    }
    Taken taken;
    for (const Kernel& kernel : plainKernelsOf(project)) {
        taken.kernels.push_back(binaryForm(kernel));
    }
    return taken;
}

const std::string beginning = "<project><platform><device><core>\n";
const std::string end = "</core></device></platform></project>\n";

TEST(KernelOutline, TakesFromEveryDocumentWhatIsInItsTree) {
    RandomDocuments documents(20);
    for (int i = 0; i < 6000; ++i) {
        const std::string document = documents.any();
        ASSERT_EQ(takenByReader(document), takenFromTree(document)) << document;
    }
}

TEST(KernelOutline, MeetsAllKindsOfDocuments) {
    RandomDocuments documents(21);
    std::size_t distinctArguments = 0;
    std::size_t laterKernels = 0;
    std::size_t oddAccepted = 0;
    std::size_t damagedAccepted = 0;
    for (int i = 0; i < 300; ++i) {
        Mekto::Project project;
        project.readMemory(documents.valid()); // which does not throw
        const std::vector<Kernel> kernels = plainKernelsOf(project);
        if (!kernels.empty()) {
            laterKernels += kernels.size() - 1;
            distinctArguments += kernels.back().arguments().size();
        }
        oddAccepted += takenFromTree(documents.odd()).succeeded ? 1 : 0;
        const Taken damaged = takenFromTree(documents.damaged());
        damagedAccepted += damaged.succeeded ? 1 : 0;
    }
    EXPECT_GT(distinctArguments, 500U);
    EXPECT_GT(laterKernels, 300U);
    EXPECT_GT(oddAccepted, 100U);
    EXPECT_LT(oddAccepted, 290U);
    EXPECT_GT(damagedAccepted, 10U);
    EXPECT_LT(damagedAccepted, 200U);
}

TEST(KernelOutline, GivesEachOfManyKernelsWhatIsInTheTree) {
    std::string kernels;
    for (int i = 0; i < 120; ++i) {
        const std::string number = std::to_string(i);
        // Some arguments are known from kernels before, and some kernels are of one name.
        kernels += "<kernel name=\"k" + std::to_string(i % 100) + "\"><arg name=\"a" + number +
                   "\" type=\"int\"/><arg name=\"b" + std::to_string(i / 3) + "\" type=\"t" +
                   number + "\"/><arg name=\"input_r\" type=\"char\"/></kernel>\n";
    }
    const Taken taken = takenByReader(beginning + kernels + end);
    EXPECT_EQ(taken.kernels.size(), 120U);
    EXPECT_EQ(taken, takenFromTree(beginning + kernels + end));
}

// The limit: each kernel behind the first one takes its only argument over, which is 1 MiB.

constexpr std::size_t mebibyte = std::size_t{1} << 20U;

/// The kernel of an argument that has 1 MiB in a database, on one line.
std::string bigKernel() {
    // Of its texts three lengths and two names, and the number of instances.
    const std::string type(mebibyte - 3 * 4 - 2 - 4, 't');
    return "<kernel><arg name=\"n\" type=\"" + type + "\"/></kernel>\n";
}

std::string smallKernels(std::size_t count) {
    return repeated("<kernel/>\n", count);
}

/// What is left when reading a document: no texts, which are too many to be copied.
struct Limited {
    bool succeeded = false;
    std::size_t kernels = 0;
    Finding stop = {};
    std::string messages = {};
};

Limited readLimited(const std::string& document) {
    std::ostringstream errors;
    KernelFile reader(std::make_unique<std::stringbuf>(document), errors);
    Limited result{.succeeded = reader.parse()};
    result.kernels = reader.kernels().size();
    result.stop = reader.diagnostic().stopped().value_or(Finding());
    result.messages = errors.str();
    return result;
}

void expectTooLarge(const std::string& document, std::uint64_t line) {
    const Limited result = readLimited(document);
    EXPECT_FALSE(result.succeeded);
    EXPECT_EQ(result.kernels, 0U);
    EXPECT_EQ(result.stop.line, line);
    EXPECT_THAT(result.stop.text, HasSubstr("more than 2 GiB"));
    EXPECT_EQ(result.messages, "Could not parse kernel file\n");
}

TEST(KernelOutline, TakesAllThatADatabaseHolds) {
    const Limited result = readLimited(beginning + bigKernel() + smallKernels(2048) + end);
    EXPECT_TRUE(result.succeeded) << result.stop.text;
    EXPECT_EQ(result.kernels, 2049U);
}

TEST(KernelOutline, RefusesADocumentAtTheKernelThatIsTooMuch) {
    // The first kernel stands on line 2, and what comes behind the last one is never read.
    const std::string tooMuch = beginning + bigKernel() + smallKernels(2049);
    expectTooLarge(tooMuch + end, 2051);
    expectTooLarge(tooMuch + smallKernels(1000) + "<damaged", 2051);
}

TEST(KernelOutline, CountsNeitherKernelsNorTheirOwnArguments) {
    EXPECT_TRUE(readLimited(beginning + smallKernels(600'000) + end).succeeded);
    EXPECT_TRUE(readLimited(beginning + bigKernel() + smallKernels(2047) +
                            "<kernel><arg name=\"m\"/></kernel>" + end)
                    .succeeded);
}

TEST(KernelOutline, CountsBothNamesOfAnArgument) {
    const auto documentWith = [](const std::string& name) {
        // 16 and two names, as often as kernels take them over.
        return beginning + "<kernel><arg name=\"" + name + "\"/></kernel>\n" + smallKernels(2048) +
               end;
    };
    const std::size_t fits = (mebibyte - 16) / 2;
    EXPECT_TRUE(readLimited(documentWith(std::string(fits, 'n'))).succeeded);
    expectTooLarge(documentWith(std::string(fits + 1, 'n')), 2050);
}

TEST(KernelOutline, DoesNotCountArgumentsThatAreKnown) {
    const std::string known = repeated("<arg name=\"n\" type=\"other\"/>", 1000);
    const std::string kernels = bigKernel() + "<kernel>" + known + "</kernel>" + smallKernels(2047);
    EXPECT_TRUE(readLimited(beginning + kernels + end).succeeded);
}

} // namespace

} // namespace consolidator::test
