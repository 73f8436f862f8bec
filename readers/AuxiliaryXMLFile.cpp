#include "readers/AuxiliaryXMLFile.h"

#include "readers/HdlReservedWords.h"
#include "shared/Words.h"

#include <array>
#include <utility>

namespace consolidator {

namespace {

constexpr std::string_view originalName = "vd:originalName=";
constexpr std::string_view busType = "vd:busTypeRef=";
constexpr std::string_view functionName = "vd:functionName=";

} // namespace

bool AuxiliaryXMLFile::parse() {
    if (!isOpen()) {
        return false;
    }
    Kernel kernel;
    std::array<char, longestLine + 1> buffer{};
    while (!stream_.eof()) {
        lineNumber_ = line();
        const std::string_view text = readLine(buffer);
        if (stuck()) {
            return stopAtLine(lineNumber_, longestLine);
        }
        scanLine(text, kernel);
    }
    if (!hasMap_) {
        diagnostic_.remark(0, Code::NoAcceleratorMap,
                           "no line begins with \"<vd:acceleratorMap\": the kernel has no name");
    }
    kernels_.push_back(std::move(kernel));
    return true;
}

void AuxiliaryXMLFile::scanLine(std::string_view text, Kernel& kernel) {
    const std::string_view first = takeWord(text);
    if (first == "<vd:arg") {
        scanArgument(text, kernel);
    } else if (first == "<vd:acceleratorMap") {
        scanAcceleratorMap(text, kernel);
    }
}

void AuxiliaryXMLFile::scanArgument(std::string_view words, Kernel& kernel) {
    std::string_view hardwareName;
    std::string_view type;
    for (auto word = takeWord(words); !word.empty(); word = takeWord(words)) {
        if (word.starts_with(originalName)) {
            hardwareName = nameOf(word, originalName);
        } else if (word.starts_with(busType)) {
            type = valueOf(word, busType) == "\"acc_fifo\"" ? "int*" : "int";
        }
    }
    const std::string sourceName = HdlReservedWords::shared().sourceName(hardwareName);
    const std::size_t before = kernel.arguments().size();
    kernel.addArgument(sourceName, hardwareName, type);
    if (kernel.arguments().size() == before) {
        diagnostic_.remark(lineNumber_, Code::RepeatedArgument,
                           "argument " + inQuotes(sourceName) +
                               " came before; this one is passed over");
    } else if (hardwareName.empty()) {
        diagnostic_.remark(lineNumber_, Code::NamelessArgument,
                           "an argument without a name is made");
    }
}

void AuxiliaryXMLFile::scanAcceleratorMap(std::string_view words, Kernel& kernel) {
    std::string_view name;
    for (auto word = takeWord(words); !word.empty(); word = takeWord(words)) {
        if (word.starts_with(functionName)) {
            name = nameOf(word, functionName);
        }
    }
    if (name.empty()) {
        diagnostic_.remark(lineNumber_, Code::NamelessMap, "the accelerator map names no function");
    }
    kernel.setName(name);
    hasMap_ = true;
}

std::string_view AuxiliaryXMLFile::nameOf(std::string_view word, std::string_view attribute) {
    std::string_view name = valueOf(word, attribute);
    // The closing quote, as a rule; nothing checks that it is one.
    name.remove_suffix(name.empty() ? 0 : 1);
    return name;
}

std::string_view AuxiliaryXMLFile::valueOf(std::string_view word, std::string_view attribute) {
    const std::size_t from = attribute.size() + 1; // behind the opening quote
    if (word.size() < from) {
        // Said here, where the line is known: the exception that follows does not know it.
        stop(lineNumber_, inQuotes(word) + " has no value");
    }
    return word.substr(from); // throws when there is none
}

} // namespace consolidator
