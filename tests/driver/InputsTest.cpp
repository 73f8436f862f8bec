// The table of input kinds, and all that must agree with it: the options of both programs, as the
// built programs tell them, and the documents that list them.

#include "driver/Inputs.h"

#include "tests/support/Command.h"
#include "tests/support/InspectRun.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace consolidator::test {

namespace {

using testing::ElementsAreArray;
using testing::HasSubstr;
using testing::StartsWith;

/// An option as a program or a document lists it.
struct Listed {
    std::string names; ///< "-l --ll"
    bool isRepeatable = false;
    std::string text; ///< What is said of it.

    bool operator==(const Listed&) const = default;
};

void PrintTo(const Listed& listed, std::ostream* out) {
    *out << listed.names << (listed.isRepeatable ? " ... " : " ") << '"' << listed.text << '"';
}

std::string letterOf(const InputOption& option) {
    return {'-', option.letter};
}

bool isRepeatable(const InputOption& option) {
    return std::holds_alternative<InputOption::ManyPaths>(option.paths);
}

/// The table's rows, with what `text` says of each.
std::vector<Listed> listedInTable(std::string_view InputOption::*text) {
    std::vector<Listed> result;
    for (const InputOption& option : inputOptions()) {
        result.push_back({letterOf(option) + " --" + std::string(option.longName),
                          isRepeatable(option), std::string(option.*text)});
    }
    return result;
}

/// Those of both programs that take no input file.
const std::set<std::string> otherOptions = {
    "-a --add",       "-c --create", "-f --consolidated_file", "-p --project", "-u --dump-dwarf",
    "-j --dump-json", "-v --version"};

/// The matches in the text, other options aside. The first group of the pattern is the letter with
/// its hyphen, the second the long name without; the third is empty unless the option is
/// repeatable, and the fourth is what is said of it.
std::vector<Listed> listedIn(const std::string& text, const std::string& pattern) {
    const std::regex regex(pattern, std::regex::ECMAScript | std::regex::multiline);
    std::vector<Listed> result;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match) {
        const std::string names = match->str(1) + " --" + match->str(2);
        if (!otherOptions.contains(names)) {
            result.push_back({names, match->length(3) > 0, match->str(4)});
        }
    }
    return result;
}

// The table itself

TEST(InputOptions, AreOneForEachKind) {
    std::set<char> letters;
    std::set<std::string_view> names;
    for (const InputOption& option : inputOptions()) {
        EXPECT_EQ(&inputOption(option.kind), &option);
        EXPECT_TRUE(letters.insert(option.letter).second) << option.letter;
        EXPECT_TRUE(names.insert(option.longName).second) << option.longName;
    }
}

// A file of each kind, in a field of its own.
TEST(InputOptions, AreKeptInFieldsOfTheirOwn) {
    for (const InputOption& given : inputOptions()) {
        InputPaths paths;
        EXPECT_FALSE(paths.anyInput());
        if (const auto* const many = std::get_if<InputOption::ManyPaths>(&given.paths)) {
            paths.** many = {"b", "a"};
        } else {
            paths.*std::get<InputOption::OnePath>(given.paths) = "b";
        }
        EXPECT_TRUE(paths.anyInput());
        for (const InputOption& option : inputOptions()) {
            const bool isGiven = option.kind == given.kind;
            const std::vector<std::string> expected = isRepeatable(given)
                                                          ? std::vector<std::string>{"b", "a"}
                                                          : std::vector<std::string>{"b"};
            EXPECT_EQ(paths.of(option), isGiven ? expected : std::vector<std::string>())
                << option.longName;
        }
    }
}

TEST(InputOptions, AreInTheOrderInWhichInputsAreTakenIn) {
    std::string letters;
    for (const InputOption& option : inputOptions()) {
        letters += option.letter;
    }
    EXPECT_EQ(letters, "dhksxlr");
}

// The programs

TEST(InputOptions, AreThoseThatTheConsolidatorTells) {
    const TemporaryDirectory directory;
    const CommandResult help = runConsolidator(directory.path("."), {"--help"});
    // It breaks lines, and does not tell which options are repeatable.
    const std::string lines = std::regex_replace(help.out, std::regex(" *\n {10,}"), " ");
    std::vector<Listed> expected = listedInTable(&InputOption::description);
    for (Listed& option : expected) {
        option.isRepeatable = false;
    }
    EXPECT_THAT(listedIn(lines, "^  (-.) \\[ --(\\S+) \\]() arg +(.*)"),
                ElementsAreArray(expected));
}

TEST(InputOptions, AreThoseThatCheckAndMergeTell) {
    const TemporaryDirectory directory;
    std::vector<Listed> expected = listedInTable(&InputOption::checkDescription);
    // They take more than one DWARF file, to say that the consolidator does not.
    expected.front().isRepeatable = true;
    for (const std::string command : {"check", "merge"}) {
        const CommandResult help = runInspector(directory.path("."), {command, "--help"});
        EXPECT_THAT(listedIn(help.out, "^  (-.),--(\\S+) FILE( \\.\\.\\.)? +(.*)"),
                    ElementsAreArray(expected));
    }
}

TEST(InputOptions, AreTakenByBothPrograms) {
    const TemporaryDirectory directory;
    const std::string folder = directory.path(".");
    for (const InputOption& option : inputOptions()) {
        for (const std::string& name : {letterOf(option), "--" + std::string(option.longName)}) {
            // A missing input is passed over in silence; a wrong option is not.
            EXPECT_EQ(runConsolidator(folder, {"-f", "db", name, "missing"}).out, "") << name;
            EXPECT_THAT(runInspector(folder, {"check", name, "missing"}).out,
                        StartsWith("missing: error: cannot be opened"))
                << name;
        }
    }
}

// The documents

/// The document at this path below the project's folder.
std::string document(const std::string& path) {
    std::ifstream file(std::string(PROJECT_DIRECTORY "/") + path);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// From the line that begins like `first` to the next one that begins like `last`.
std::string part(const std::string& text, const std::string& first, const std::string& last) {
    const std::size_t begin = text.find('\n' + first);
    const std::size_t end = text.find('\n' + last, begin + 1);
    EXPECT_NE(begin, std::string::npos) << first;
    EXPECT_NE(end, std::string::npos) << last;
    return begin < end ? text.substr(begin + 1, end - begin) : "";
}

/// That a document lists the table's options in their order, and which may be repeated.
void expectOptions(const std::vector<Listed>& listed, const std::string& path) {
    std::vector<Listed> expected = listedInTable(&InputOption::content);
    for (std::size_t i = 0; i < std::min(expected.size(), listed.size()); ++i) {
        expected[i].text = listed[i].text; // in words of its own
    }
    EXPECT_THAT(listed, ElementsAreArray(expected)) << path;
}

// Shells show the words as they are; zsh's begin with a small letter, as is its custom.
std::string withoutCapital(std::string text) {
    if (text.size() > 1 && text[1] >= 'a' && text[1] <= 'z' && text[0] >= 'A' && text[0] <= 'Z') {
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
    }
    return text;
}

std::vector<Listed> listedForZsh(const std::string& path) {
    // "'*'{-l,--ll}'[logic locations]:file:...", or "'(-d --DWARF)'{-d,--DWARF}'[...".
    const std::regex regex(R"('(\*?)[^']*'\{(-.),--([^}]+)\}'\[([^\]]*)\]:file)");
    return listedIn(std::regex_replace(document(path), regex, "\n@ $2 $3 $1 [$4]\n"),
                    R"(^@ (-.) (\S+) (\*?) \[(.*)\]$)");
}

std::vector<Listed> listedForFish(const std::string& path) {
    // "complete -c consolidator -s l -l ll -rF -d 'Logic locations'"
    std::vector<Listed> result = listedIn(
        std::regex_replace(document(path), std::regex(" -s (.) -l (\\S+) -rF -d "), "\n@ -$1 $2 "),
        R"(^@ (-.) (\S+)() '(.*)'$)");
    for (std::size_t i = 0; i < result.size(); ++i) {
        result[i].isRepeatable = i > 0; // any option is to fish
    }
    return result;
}

/// Of a man page, without emphasis.
std::vector<Listed> listedInManPage(const std::string& text) {
    // "*-l*, *--ll* _file_ ...", and the text in the line below.
    return listedIn(text, R"(^\*(-.)\*, \*--(\S+)\* _file_( \.\.\.)?\n\t(.*)$)");
}

std::string checkPartOfManPage() {
    return part(document("packaging/consolidator-inspect.1.scd"), "## check", "## merge");
}

TEST(InputDocuments, ListTheOptions) {
    // "| `-l`, `--ll` | file, repeatable | ..."
    expectOptions(listedIn(part(document("README.md"), "| option", "Inputs are"),
                           R"(^\| `(-.)`, `--(\S+)` \| file(, repeatable)? \| (.*) \|$)"),
                  "README.md");
    expectOptions(listedInManPage(document("packaging/consolidator.1.scd")), "consolidator.1");
    expectOptions(listedInManPage(checkPartOfManPage()), "consolidator-inspect.1");
    for (const std::string path : {"_consolidator", "_consolidator-inspect"}) {
        expectOptions(listedForZsh("packaging/completions/zsh/" + path), path);
    }
    for (const std::string path : {"consolidator.fish", "consolidator-inspect.fish"}) {
        expectOptions(listedForFish("packaging/completions/fish/" + path), path);
    }
}

TEST(InputDocuments, ListTheOptionsForBash) {
    std::string all;
    const std::string consolidator = document("packaging/completions/bash/consolidator");
    for (const Listed& option : listedInTable(&InputOption::content)) {
        all += ' ' + option.names;
        const std::string label = std::regex_replace(option.names, std::regex(" "), " | ");
        EXPECT_THAT(consolidator, HasSubstr(label)); // files are offered behind it
    }
    for (const std::string path : {"consolidator", "consolidator-inspect"}) {
        const std::string text = document("packaging/completions/bash/" + path);
        EXPECT_THAT(std::regex_replace(text, std::regex("\\s+"), " "), HasSubstr(all + " -"))
            << path;
    }
}

TEST(InputDocuments, ShowTheLettersInTheirOrder) {
    std::string synopsis;
    std::string rows;
    for (const InputOption& option : inputOptions()) {
        synopsis += " [" + letterOf(option) + " FILE]" + (isRepeatable(option) ? "..." : "");
        rows += letterOf(option) + ' ';
    }
    EXPECT_THAT(std::regex_replace(document("docs/inspector.md"), std::regex("\\s+"), " "),
                HasSubstr(synopsis + " ["));
    std::string shown;
    for (const Listed& row :
         listedIn(document("examples/README.md"), R"(^\| `.*` \| `(-.)`()()())")) {
        shown += row.names.substr(0, 3);
    }
    EXPECT_EQ(shown, rows);
}

// The completions say the same of an option, and the man pages begin with that.
TEST(InputDocuments, AgreeInTheirWords) {
    const std::vector<Listed> wanted = listedForZsh("packaging/completions/zsh/_consolidator");
    ASSERT_EQ(wanted.size(), inputOptions().size());
    std::vector<std::vector<Listed>> same = {
        listedForZsh("packaging/completions/zsh/_consolidator-inspect"),
        listedForFish("packaging/completions/fish/consolidator.fish"),
        listedForFish("packaging/completions/fish/consolidator-inspect.fish")};
    for (std::vector<Listed>& others : same) {
        for (Listed& option : others) {
            option.text = withoutCapital(option.text);
        }
        EXPECT_THAT(others, ElementsAreArray(wanted));
    }
    for (const std::vector<Listed>& page :
         {listedInManPage(document("packaging/consolidator.1.scd")),
          listedInManPage(checkPartOfManPage())}) {
        ASSERT_EQ(page.size(), wanted.size());
        for (std::size_t i = 0; i < page.size(); ++i) {
            EXPECT_THAT(withoutCapital(page[i].text), StartsWith(wanted[i].text));
        }
    }
}

} // namespace

} // namespace consolidator::test
