// The codes of findings: each that the product makes is explained in docs/inspector.md, and each
// that is explained there is made.

#include "shared/Code.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace consolidator::inspect::test {

namespace {

using testing::ContainerEq;
using testing::Contains;
using testing::Gt;
using testing::SizeIs;

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The words of all codes but None. How many there are does not matter: what is no code has no
/// word.
std::set<std::string> words() {
    std::set<std::string> result;
    for (unsigned number = 1; number <= 255; ++number) {
        const std::string_view known = word(static_cast<Code>(number));
        if (!known.empty()) {
            EXPECT_TRUE(result.emplace(known).second) << known << " stands for two codes";
        }
    }
    return result;
}

/// The first columns of the table of codes, with how often each comes.
std::map<std::string, int> documented() {
    std::istringstream lines(
        contentOf(std::filesystem::path(DOCUMENTS_DIRECTORY) / "inspector.md"));
    std::map<std::string, int> result;
    bool isInTable = false;
    for (std::string line; std::getline(lines, line);) {
        std::smatch row;
        if (line == "| code | severity | what it says |") {
            isInTable = true;
        } else if (!line.starts_with('|')) {
            isInTable = false;
        } else if (isInTable && std::regex_search(line, row, std::regex("^\\| `([^`]*)` \\|"))) {
            ++result[row[1].str()];
        }
    }
    return result;
}

/// The names behind "Code::" in the product, but for the list of the codes itself, as the words
/// that they should have: of Code::NotMerged "not-merged".
std::set<std::string> made() {
    std::set<std::string> result;
    const std::filesystem::path source(SOURCE_DIRECTORY);
    const std::regex use("\\bCode::([A-Z][A-Za-z0-9]*)");
    for (const char* const folder :
         {"consolidated", "driver", "inspect", "model", "query", "readers", "shared"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(source / folder)) {
            if (!entry.is_regular_file() || entry.path().stem() == "Code") {
                continue;
            }
            const std::string text = contentOf(entry.path());
            for (std::sregex_iterator name(text.begin(), text.end(), use), end; name != end;
                 ++name) {
                std::string expected;
                for (const char c : (*name)[1].str()) {
                    const bool isUpper = std::isupper(static_cast<unsigned char>(c)) != 0;
                    expected += isUpper && !expected.empty() ? "-" : "";
                    expected += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
                }
                result.insert(expected);
            }
        }
    }
    result.erase("none");
    return result;
}

TEST(Codes, HaveWordsOfSmallLettersAndHyphens) {
    const std::regex form("[a-z]+(-[a-z]+)*");
    for (const std::string& known : words()) {
        EXPECT_TRUE(std::regex_match(known, form)) << known;
    }
    EXPECT_EQ(word(Code::None), "");
    EXPECT_EQ(word(Code::NotMerged), "not-merged");
    EXPECT_EQ(word(Code::NothingLocated), "nothing-located");
    EXPECT_EQ(word(static_cast<Code>(255)), "");
}

TEST(Codes, AreThoseThatTheProductMakes) {
    EXPECT_THAT(words(), SizeIs(Gt(60U)));
    EXPECT_THAT(made(), ContainerEq(words()));
}

TEST(Codes, AreExplainedInTheDocumentEachOnce) {
    std::map<std::string, int> expected;
    for (const std::string& known : words()) {
        expected[known] = 1;
    }
    EXPECT_THAT(documented(), ContainerEq(expected));
    EXPECT_THAT(documented(), Contains(testing::Key("blank-net")));
}

} // namespace

} // namespace consolidator::inspect::test
