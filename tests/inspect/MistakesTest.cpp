// Every mistake in mistakes/, one per folder, found by its one command: the output to the letter,
// and as docs/troubleshooting.md shows it.
//
//     mistakes/NAME/command     the command as the document has it
//     mistakes/NAME/expected    all that it prints
//     mistakes/NAME/…           its input files

#include "tests/support/InspectRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace consolidator::test {

namespace {

using testing::HasSubstr;

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string document() {
    return contentOf(std::filesystem::path(DOCUMENTS_DIRECTORY) / "troubleshooting.md");
}

std::vector<std::string> mistakes() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MISTAKES_DIRECTORY)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    return names;
}

std::map<std::string, std::string> filesOf(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        files[entry.path().string()] = entry.is_regular_file() ? contentOf(entry.path()) : "";
    }
    return files;
}

struct Mistake : testing::TestWithParam<std::string> {
    std::filesystem::path folder = std::filesystem::path(MISTAKES_DIRECTORY) / GetParam();
    std::string command = contentOf(folder / "command"); ///< With its newline.
    std::string expected = contentOf(folder / "expected");
};

TEST_P(Mistake, IsFoundByItsCommandWhichChangesNothing) {
    std::istringstream words(command);
    std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
    ASSERT_EQ(arguments.at(0), "consolidator-inspect");
    arguments.erase(arguments.begin());
    const auto before = filesOf(folder);
    EXPECT_EQ(runInspector(folder.string(), arguments), (CommandResult{1, expected, ""}));
    EXPECT_EQ(filesOf(folder), before);
}

TEST_P(Mistake, IsShownInTheDocument) {
    EXPECT_THAT(document(), HasSubstr("```\n$ " + command + expected + "```\n"));
}

INSTANTIATE_TEST_SUITE_P(All, Mistake, testing::ValuesIn(mistakes()),
                         [](const auto& name) { return name.param; });

TEST(Mistakes, AreAllThatTheDocumentShows) {
    const std::string text = document();
    std::size_t shown = 0;
    const std::string prompt = "\n$ consolidator-inspect check ";
    for (std::size_t at = text.find(prompt); at != std::string::npos;
         at = text.find(prompt, at + 1)) {
        ++shown;
    }
    EXPECT_EQ(shown, mistakes().size());
    EXPECT_GE(shown, 15U);
}

} // namespace

} // namespace consolidator::test
