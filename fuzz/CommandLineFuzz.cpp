// Feeds command lines: the input is split at newlines and zero bytes into the words behind the
// program's name.
//
// Checks that the options are the same whenever they are parsed; that a run ends with 0 or 1, the
// latter with a message, and throws nothing; and that the same run on the same files does the same.
//
// Runs happen in a scratch directory that holds a file of each kind: hier, xml, hls, aux, ll, ram,
// dwarf and db. A command line that could lead out of it is parsed, but not run.

#include "driver/ConsolidatorOptions.h"
#include "driver/Driver.h"
#include "fuzz/Fuzzing.h"
#include "fuzz/ScratchDirectory.h"
#include "tests/support/ArgumentVector.h"

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <unistd.h>
#include <vector>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

std::vector<std::string> wordsOf(std::string_view bytes) {
    std::vector<std::string> words{"consolidator"};
    while (!bytes.empty()) {
        const std::size_t end = bytes.find_first_of(std::string_view("\n\0", 2));
        words.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
    return words;
}

bool staysInside(const std::vector<std::string>& words) {
    return std::ranges::none_of(words, [](const std::string& word) {
        return word.find('/') != std::string::npos || word.find("..") != std::string::npos;
    });
}

/// All that the words mean.
auto meaningOf(const ConsolidatorOptions& o) {
    return std::tie(o.programName, o.add, o.create, o.dumpDwarfFile, o.dumpJsonFile,
                    o.dumpRequested, o.help, o.version, o.dwarfFile, o.hierarchyFiles,
                    o.kernelFiles, o.hlsFiles, o.auxFiles, o.llFiles, o.ramFiles,
                    o.consolidatedFile, o.project, o.optionError, o.parseError);
}

/// Goes into a directory and back at the end of its scope.
class InDirectory {
public:
    explicit InDirectory(const std::string& path) : before_(open(".", O_RDONLY | O_CLOEXEC)) {
        fuzz::require(before_ >= 0 && chdir(path.c_str()) == 0, "the scratch directory is there");
    }
    ~InDirectory() {
        fuzz::require(fchdir(before_) == 0, "there is a way back");
        close(before_);
    }
    InDirectory(const InDirectory&) = delete;
    InDirectory& operator=(const InDirectory&) = delete;

private:
    int before_;
};

/// Takes everything away that an earlier run may have left, and puts the inputs there.
void fill(const fuzz::ScratchDirectory& directory) {
    directory.clear();
    directory.write("hier", "scale type: hls instance path: top/scale_1");
    directory.write("xml", "<project><platform><device><core><kernel name='scale'>"
                           "<arg name='size_r'/></kernel></core></device></platform></project>");
    directory.write("hls", "Begin Function f\nRTL 1 s (x == 1)\nlocal v\nat: f.cpp:3\n\n"
                           "End Function f\n");
    directory.write("aux", "<vd:acceleratorMap vd:functionName=\"scale\" />\n");
    directory.write("ll", "Bit 1 0x2 3 TILE 0 Net=top/scale_1/size_r[1]\n");
    directory.write("ram", "8. Block Ram / URAM Memory Power - Instantiated\n");
    directory.write("dwarf", "debug");
    directory.write("db", std::string_view("\xd4\xda\xef\xbe\1\0\0\0\1\0\0\0\1\0\0\0"
                                           "\0\0\0\0\0\0\0\0\x28\0\0\0\0\0\0\0\4\0\0\0\0\0\0\0"
                                           "demo",
                                           44));
}

/// All that a run tells and leaves.
struct Result {
    int status = 0;
    std::string out;
    std::string err;
    std::map<std::string, std::string> files;

    bool operator==(const Result&) const = default;
};

Result execute(const fuzz::ScratchDirectory& directory, const test::ArgumentVector& arguments) {
    fill(directory);
    std::ostringstream out;
    std::ostringstream err;
    Result result;
    const InDirectory inside(directory.path(""));
    result.status = run(arguments.count(), arguments.pointers(), out, err);
    result.out = out.str();
    result.err = err.str();
    for (const auto& file : std::filesystem::directory_iterator(directory.path(""))) {
        const std::string name = file.path().filename().string();
        result.files[name] = directory.read(name).value_or("");
    }
    return result;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::ScratchDirectory directory;
    const std::vector<std::string> words = wordsOf(fuzz::textOf(data, size));
    const test::ArgumentVector arguments(words);
    std::ostringstream out;
    const ConsolidatorOptions options(arguments.count(), arguments.pointers(), out);
    std::ostringstream outAgain;
    const ConsolidatorOptions again(arguments.count(), arguments.pointers(), outAgain);
    fuzz::require(meaningOf(options) == meaningOf(again), "the same words mean the same");
    fuzz::require(out.str() == outAgain.str(), "the same words get the same answer");
    fuzz::require(!options.parseError || !out.str().empty(), "a bad command line gets an answer");
    fuzz::require(options.add != options.create, "a run adds or creates");
    if (!staysInside(words)) {
        return 0;
    }
    const Result first = execute(directory, arguments);
    fuzz::require(first.status == 0 || (first.status == 1 && !first.err.empty()),
                  "a run ends in a known way");
    fuzz::require(execute(directory, arguments) == first, "the same run does the same");
    return 0;
}
