// Each kernel of a kernel.xml has the arguments of those before it: a few hundred kilobytes of
// input make a database of 160 MB, which must come out to the byte, and must not be kept in memory.

#include "tests/damage/DamagedRun.h"
#include "tests/support/Bytes.h"
#include "tests/support/HowBuilt.h"
#include "tests/support/KnownKernels.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

namespace {

/// A document of many kernels, and what a database has of it.
class ManyKernels {
public:
    ManyKernels(std::size_t kernels, std::size_t argumentsOfEach, bool haveInstances = false)
        : each_(argumentsOfEach), haveInstances_(haveInstances) {
        ends_.push_back({});
        for (std::size_t kernel = 0; kernel < kernels; ++kernel) {
            addKernel("kernel_" + std::to_string(kernel));
        }
        document += "</core></device></platform></project>\n";
    }

    std::string document = "<project><platform><device><core>\n";
    std::string hierarchy; ///< A file with an instance of each kernel.

    /// Calls take(piece) for each piece of the database, one after the other.
    template <typename Take>
    void forEachPiece(Take take) const {
        std::uint32_t jsonSize = 0;
        std::uint32_t dataSize = 0;
        forEachPieceOfJson([&](std::string_view piece) { jsonSize += lengthOf(piece); });
        forEachPieceOfData([&](std::string_view piece) { dataSize += lengthOf(piece); });
        take(header(2) + entry(3, 64, jsonSize) + entry(2, 64 + jsonSize, dataSize));
        forEachPieceOfJson(take);
        forEachPieceOfData(take);
    }

private:
    /// Where the arguments of a number of kernels end in the texts of all.
    struct Ends {
        std::size_t json = 0;
        std::size_t data = 0;
    };

    static std::uint32_t lengthOf(std::string_view piece) {
        return static_cast<std::uint32_t>(piece.size());
    }

    void addKernel(const std::string& name) {
        KnownKernel kernel{.name = name,
                           .conditions = {{0, "== 1'b1 $i/kc_start"}, {1, "== 1'b1 $i/kc_done"}}};
        if (haveInstances_) {
            kernel.type = 4;
            kernel.instancePaths = {"top/" + name};
            hierarchy += name + " type: hls instance path: top/" + name + "\n";
        }
        document += "<kernel name=\"" + name + "\">\n";
        for (std::size_t i = 0; i < each_; ++i) {
            const std::string number = std::to_string(i);
            const std::string port = name + "_argument_" + number;
            document += "<arg name=\"" + port + "\" type=\"int*\"/>\n";
            json_ += json_.empty() ? "" : ", ";
            json_ += "[ \"" + port + "\", \"" + port + "\", \"int*\", 64]";
            data_ += variable(port, port, "int*");
        }
        document += "</kernel>\n";
        kernels_.push_back(kernel);
        ends_.push_back({json_.size(), data_.size()});
    }

    template <typename Take>
    void forEachPieceOfJson(Take take) const {
        constexpr std::string_view heading = "\"Arguments\" : [ ";
        const std::string nothing = knownJson({});
        const std::size_t start = nothing.find("[ ") + 2;
        take(std::string_view(nothing).substr(0, start));
        for (std::size_t i = 0; i < kernels_.size(); ++i) {
            const std::string alone = knownJson({kernels_[i]});
            const std::size_t size = alone.size() - nothing.size();
            const std::string_view json = std::string_view(alone).substr(start, size);
            const std::size_t place = json.find(heading) + heading.size();
            take(i == 0 ? "" : ", ");
            take(json.substr(0, place));
            take(std::string_view(json_).substr(0, ends_[i + 1].json));
            take(json.substr(place));
        }
        take(std::string_view(nothing).substr(start));
    }

    template <typename Take>
    void forEachPieceOfData(Take take) const {
        take(u32(static_cast<std::uint32_t>(kernels_.size())));
        for (std::size_t i = 0; i < kernels_.size(); ++i) {
            const std::string record = knownRecord(kernels_[i]);
            std::size_t place = 4 + kernels_[i].name.size() + 4 + 4; // name, paths, type
            for (const std::string& path : kernels_[i].instancePaths) {
                place += 4 + path.size();
            }
            take(std::string_view(record).substr(0, place));
            take(u32(static_cast<std::uint32_t>((i + 1) * each_)));
            take(std::string_view(data_).substr(0, ends_[i + 1].data));
            take(std::string_view(record).substr(place + 4));
        }
    }

    std::size_t each_;
    bool haveInstances_;
    std::vector<KnownKernel> kernels_; ///< Without their arguments,
    std::string json_;                 ///< which are here, of all kernels,
    std::string data_;                 ///< and here in binary form.
    std::vector<Ends> ends_;           ///< Of no kernels, of one, …
};

/// Under a sanitizer memory is not measured, and time is short.
constexpr std::size_t ofMany(std::size_t kernels) {
    return sanitized || emulated ? kernels / 10 : kernels;
}

struct CarriedArguments : testing::Test {
    void expectDatabase(const ManyKernels& expected) const {
        std::ifstream file(run.db, std::ios::binary);
        std::string found;
        bool isSame = true;
        expected.forEachPiece([&](std::string_view piece) {
            found.resize(piece.size());
            file.read(found.data(), static_cast<std::streamsize>(found.size()));
            isSame = isSame && file && found == piece;
        });
        EXPECT_TRUE(isSame);
        EXPECT_EQ(file.peek(), std::ifstream::traits_type::eof());
    }

    void expectAll(const ManyKernels& kernels) {
        run.begin("many kernels");
        const std::string path = run.directory.write("kernel.xml", kernels.document);
        run.expectRun({"-c", "-k", path}, kernels.document.size());
        expectDatabase(kernels);
    }

    DamagedRun run;
};

} // namespace

TEST_F(CarriedArguments, OfAFewKernelsAreInEachOfThem) {
    expectAll(ManyKernels(3, 2));
    const std::string database = run.directory.read("db");
    std::vector<KnownVariable> arguments;
    std::vector<KnownKernel> kernels;
    for (const std::string name : {"kernel_0", "kernel_1", "kernel_2"}) {
        for (const std::string& port : {name + "_argument_0", name + "_argument_1"}) {
            arguments.push_back({port, port, "int*", 64});
        }
        kernels.push_back({.name = name, .arguments = arguments});
        kernels.back().conditions = {{0, "== 1'b1 $i/kc_start"}, {1, "== 1'b1 $i/kc_done"}};
    }
    EXPECT_EQ(database, knownDatabase(kernels)); // whose writer knows no shortcut
}

TEST_F(CarriedArguments, OfAThousandKernelsTakeLittleMemory) {
    expectAll(ManyKernels(ofMany(1000), 4));
}

TEST_F(CarriedArguments, OfKernelsWithADozenEachTakeLittleMemory) {
    expectAll(ManyKernels(ofMany(600), 12));
}

TEST_F(CarriedArguments, OfTwoThousandKernelsTakeLittleMemory) {
    expectAll(ManyKernels(ofMany(2000), 1));
}

TEST_F(CarriedArguments, OfKernelsThatHaveInstancesTakeLittleMemory) {
    const ManyKernels kernels(ofMany(1000), 4, true);
    run.begin("many kernels with instances");
    const std::string hierarchy = run.directory.write("system.hier", kernels.hierarchy);
    const std::string path = run.directory.write("kernel.xml", kernels.document);
    run.expectRun({"-c", "-h", hierarchy, "-k", path, "-k", path},
                  kernels.hierarchy.size() + 2 * kernels.document.size());
    expectDatabase(kernels);
}

} // namespace consolidator::test
