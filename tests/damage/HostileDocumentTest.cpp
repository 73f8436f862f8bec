// Kernel descriptions whose document types were made to waste time or memory, and what they get.

#include "tests/damage/MemoryMeter.h"
#include "tests/damage/Watchdog.h"
#include "tests/support/DriverRun.h"
#include "tests/support/HowBuilt.h"
#include "tests/support/Repeated.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <utility>

namespace consolidator::test {

namespace {

constexpr std::chrono::seconds longestCase{sanitized || emulated ? 1000 : 200};

/// What a document type may add for nothing, 1 MiB, and its document with four times that added:
/// each byte may cost 100, as without a document type.
constexpr std::size_t memoryLimit(std::size_t size) {
    return 100 * (std::size_t{1024} * 1024 + 5 * size);
}

struct HostileDocument : testing::Test {
    /// A run on the document may take or refuse it.
    void expectModestRun(const std::string& what, const std::string& declarations,
                         const std::string& content) {
        SCOPED_TRACE(what);
        watchdog.begin(what);
        const std::string document = "<!DOCTYPE project [" + declarations +
                                     "]><project><platform><device><core>" + content +
                                     "</core></device></platform></project>";
        const std::string path = directory.write("kernel.xml", document);
        const MemoryMeter meter;
        const CommandResult result = runDriver({"-c", "-f", directory.path("db"), "-k", path});
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.err.empty() || result.err == "Could not parse kernel file\n");
        EXPECT_LE(meter.peak(), memoryLimit(document.size()));
        EXPECT_LE(std::filesystem::file_size(directory.path("db")), memoryLimit(document.size()));
    }

    const TemporaryDirectory directory = TemporaryDirectory::inMemory();
    Watchdog watchdog{longestCase};
};

/// Entities of which each holds the one before `times` times, the first one `text`.
std::string entities(const std::string& text, int count, std::size_t times,
                     const std::string& before = "<!ENTITY e", const std::string& sign = "&") {
    std::string declarations = before + "0 \"" + text + "\">";
    for (int i = 1; i < count; ++i) {
        declarations += before + std::to_string(i) + " \"" +
                        repeated(sign + "e" + std::to_string(i - 1) + ";", times) + "\">";
    }
    return declarations;
}

std::string parameterEntities(const std::string& text, int count, std::size_t times) {
    return entities(text, count, times, "<!ENTITY % e", "&#37;");
}

} // namespace

TEST_F(HostileDocument, EntitiesThatMultiply) {
    const std::string kernels = repeated("<kernel/>", 1000);
    const std::string arguments = repeated("<arg name='a' type='int'/>", 1000);
    expectModestRun("ten times ten", entities("<kernel/>", 20, 10), "&e19;");
    expectModestRun("twice twice", entities("<kernel/>", 60, 2), "&e59;");
    expectModestRun("in a value", entities("xxxxxxxxxx", 20, 10), "<kernel name='&e19;'/>");
    expectModestRun("in declarations", parameterEntities("<!ENTITY a 'b'>", 20, 10) + "%e19;", "");
    expectModestRun("one often", "<!ENTITY a '" + kernels + "'>", repeated("&a;", 20'000));
    expectModestRun("all that is free", "<!ENTITY a '" + kernels + "'>", repeated("&a;", 115));
    expectModestRun("all that is allowed", "<!ENTITY a '" + kernels + "'>",
                    repeated(kernels, 40) + repeated("&a;", 155));
    expectModestRun("arguments", "<!ENTITY a '" + arguments + "'>",
                    repeated("<kernel>" + repeated("&a;", 10) + "</kernel>", 1000));
}

TEST_F(HostileDocument, DefaultValuesThatMultiply) {
    const auto values = [](std::size_t length, std::size_t kernels) {
        return std::pair("<!ATTLIST kernel name CDATA '" + std::string(length, 'x') + "'>",
                         repeated("<kernel/>", kernels));
    };
    for (const auto& [length, kernels] :
         {std::pair(1'000'000, 10'000), std::pair(1000, 1000), std::pair(2000, 20'000)}) {
        const auto [declaration, content] =
            values(static_cast<std::size_t>(length), static_cast<std::size_t>(kernels));
        expectModestRun(std::to_string(length) + " bytes", declaration, content);
    }
    std::string many;
    for (int i = 0; i < 300'000; ++i) {
        many += " a" + std::to_string(i) + " CDATA ''";
    }
    const std::string some = many.substr(0, 400'000);
    const std::string whole = some.substr(0, some.rfind(" a"));
    expectModestRun("many", "<!ATTLIST kernel" + many + ">", "");
    expectModestRun("some", "<!ATTLIST kernel" + whole + ">", repeated("<kernel/>", 100'000));
}

TEST_F(HostileDocument, ChainsOfEntities) {
    for (const int count : {1000, 100'000}) {
        const std::string last = "e" + std::to_string(count - 1) + ";";
        const std::string chain = entities("x", count, 1);
        expectModestRun("text", chain, "&" + last);
        expectModestRun("value", chain, "<kernel name='&" + last + "'/>");
        expectModestRun("declarations", parameterEntities("<!ENTITY a ''>", count, 1) + "%" + last,
                        "");
    }
}

} // namespace consolidator::test
