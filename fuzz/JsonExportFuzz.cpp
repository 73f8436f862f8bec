// Feeds the bytes to the inspector as a database that is exported as JSON.
//
// Checks that
// - every document is valid JSON, for a parser that shares nothing with the writer;
// - both layouts say the same;
// - the numbers of things are those of the records, and Base64 has the length of its bytes.

#include "fuzz/Fuzzing.h"
#include "fuzz/ScratchFile.h"
#include "inspect/export/JsonExport.h"

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

using namespace consolidator; // NOLINT(google-build-using-namespace)

namespace {

using inspect::JsonOptions;

nlohmann::json documentOf(const Database& database, const JsonOptions& options) {
    std::ostringstream out;
    inspect::exportJson(database, options, out);
    const std::string text = out.str();
    fuzz::require(!text.empty() && text.back() == '\n', "a document ends its line");
    nlohmann::json document = nlohmann::json::parse(text, nullptr, false);
    fuzz::require(!document.is_discarded(), "a document is valid");
    return document;
}

void checkKernel(const nlohmann::json& document, const Kernel& kernel) {
    fuzz::require(document["instances"].size() == kernel.instancePaths().size(),
                  "there are all instances");
    fuzz::require(document["arguments"].size() == kernel.arguments().size(),
                  "there are all arguments");
    fuzz::require(document["variables"].size() == kernel.variables().size(),
                  "there are all variables");
    fuzz::require(document["conditions"].size() == kernel.breakableConditions().size(),
                  "there are all conditions");
    fuzz::require(document["brams"].size() == kernel.brams().size(), "there are all block RAMs");
    const nlohmann::json& registers = document["registers"];
    fuzz::require(registers.size() == kernel.hardwareVariables().size(), "there are all registers");
    for (std::size_t i = 0; i < registers.size(); ++i) {
        const LocationList& locations = kernel.hardwareVariables()[i].locations;
        fuzz::require(registers[i]["width"] == locations.size(), "a register has its width");
        for (const nlohmann::json& bit : registers[i]["bits"]) {
            const LogicLocation location = locations[bit["bit"].get<std::uint32_t>()];
            fuzz::require(location != LogicLocation{} && bit["address"] == location.address &&
                              bit["offset"] == location.offset,
                          "a bit lies where its record says");
        }
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFile file;
    file.setBytes(fuzz::textOf(data, size));
    Database database;
    if (database.read(file.path()) == Database::Readable::Not) {
        return 0;
    }
    nlohmann::json document =
        documentOf(database, {.layout = JsonOptions::Layout::Pretty, .withDwarf = true});
    fuzz::require(document["complete"] == database.error().empty(), "a part is called so");
    fuzz::require(document["dwarf"].is_null() != database.dwarf().has_value(),
                  "DWARF is there if it is");
    if (database.dwarf()) {
        const std::size_t bytes = database.dwarf()->size();
        const auto& text = document["dwarf"]["base64"].get_ref<const std::string&>();
        fuzz::require(text.size() == (bytes + 2) / 3 * 4, "three bytes are four characters");
        document["dwarf"].erase("base64");
    }
    fuzz::require(document["kernels"].size() == database.kernels().size(), "there are all kernels");
    for (std::size_t i = 0; i < database.kernels().size(); ++i) {
        checkKernel(document["kernels"][i], database.kernels()[i]);
    }
    fuzz::require(documentOf(database, {}) == document, "all layouts say the same");
    return 0;
}
