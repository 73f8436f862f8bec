#include "tests/support/RandomInputs.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace consolidator::test {

namespace {

template <typename Variables>
bool hasName(const Variables& variables, const std::string& name) {
    return std::ranges::any_of(
        variables, [&](const KnownVariable& variable) { return variable.sourceName == name; });
}

std::string hexadecimal(std::uint32_t number) {
    std::array<char, 11> text{};
    std::snprintf(text.data(), text.size(), "0x%08x", number);
    return text.data();
}

} // namespace

std::string RandomInputs::word() {
    return random_.anyOf({"a", "gain", "row", "sum", "crc", "state", "count", "x\x80y", "n"}) +
           std::to_string(random_.below(20));
}

std::string RandomInputs::blank() {
    return random_.anyOf({" ", " ", "  ", "\t", "\n", "\r\n", "\n\n\t"});
}

StatedInput RandomInputs::hierarchy() {
    StatedInput result;
    result.text = random_.anyOf({"", "# a comment\n", "version: 1.0\n", "\n\n"});
    for (std::size_t count = 1 + random_.below(5); count > 0; --count) {
        KnownKernel kernel;
        kernel.name = "kernel_" + word();
        result.text += kernel.name + blank();
        for (std::size_t paths = random_.below(4); paths > 0; --paths) {
            const std::string path = "top/" + word() + "/" + kernel.name;
            result.text += "instance" + blank() + "path:" + blank() + path + blank();
            if (std::ranges::find(kernel.instancePaths, path) == kernel.instancePaths.end()) {
                kernel.instancePaths.push_back(path);
            }
        }
        const std::array<std::string, 5> types = {"clc", "c", "ip", "other", "hls"};
        kernel.type = static_cast<std::uint32_t>(random_.below(types.size()));
        // The type comes last: a name at the end of the file would count twice.
        result.text += "type:" + blank() + types.at(kernel.type) + "\n";
        if (random_.onceIn(3)) {
            result.text += "# between kernels: type: hls\n";
        }
        result.kernels.push_back(kernel);
    }
    return result;
}

void RandomInputs::addEntry(std::size_t line, StatedInput& input) {
    KnownKernel& kernel = input.kernels.front();
    KnownCondition condition;
    condition.kind = 2;
    condition.text = "(" + word() + " == 1'b1)";
    condition.line = static_cast<std::uint32_t>(line);
    condition.file = word() + ".cpp";
    const KnownVariable variable{word(), word() + "_reg", "int"};
    input.text += "RTL 1 state " + condition.text + "\n";
    input.text += "local " + variable.sourceName + "\n";
    const bool located = !random_.onceIn(5);
    if (located) {
        input.text += "at: " + condition.file + ":" + std::to_string(line) + "\n";
    }
    input.text += random_.anyOf({"", "  indented words\n", "\t\n"});
    input.text += random_.anyOf({"", "reg: other_reg[7:0]\n"});
    input.text += "end " + variable.hardwareName + "[3:0] 4\n";
    const bool isNew = std::ranges::none_of(
        kernel.conditions, [&](const KnownCondition& known) { return known.line == line; });
    if (located && isNew) {
        kernel.conditions.push_back(condition);
        if (!hasName(kernel.variables, variable.sourceName)) {
            kernel.variables.push_back(variable);
        }
    }
}

StatedInput RandomInputs::hls(const std::string& kernelName) {
    StatedInput result;
    result.kernels.push_back({.name = kernelName});
    result.text = "Begin Function " + word() + "\n\n";
    for (std::size_t count = random_.below(6); count > 0; --count) {
        addEntry(1 + random_.below(12), result);
    }
    result.text += "End Function " + word() + "\n";
    return result;
}

StatedInput RandomInputs::auxiliary() {
    StatedInput result;
    KnownKernel kernel;
    kernel.name = "kernel_" + word();
    result.text = random_.anyOf({"", "<?xml version=\"1.0\"?>\n", "text\n"});
    result.text += "<vd:acceleratorMap vd:functionName=\"" + kernel.name + "\" >\n";
    for (std::size_t count = random_.below(6); count > 0; --count) {
        const std::string name = random_.onceIn(4) ? "in" : word();
        const std::string port = name == "in" ? "in_r" : name;
        const bool stream = random_.onceIn(3);
        result.text += "  <vd:arg vd:originalName=\"" + port + "\" vd:busTypeRef=\"";
        result.text += stream ? "\"acc_fifo\" />\n" : "acc_scalar\" />\n";
        if (!hasName(kernel.arguments, name)) {
            kernel.arguments.push_back({name, port, stream ? "int*" : "int"});
        }
    }
    result.kernels.push_back(kernel);
    return result;
}

std::string RandomInputs::bitLine(const std::string& net, const KnownPlace& place) {
    return "Bit " + std::to_string(random_.number()) + " " + hexadecimal(place.address) + " " +
           std::to_string(place.offset) + " TILE_X1Y2 0 Latch=Q Net=" + net + "\n";
}

void RandomInputs::addRegister(KnownKernel& kernel, const std::string& net, std::string& text) {
    if (std::ranges::any_of(kernel.registers, [&](const KnownRegister& known) {
            return known.netName == "/" + net;
        })) {
        return;
    }
    KnownRegister added{"/" + net, {}};
    for (std::size_t count = 1 + random_.below(5); count > 0; --count) {
        const std::size_t bit = random_.below(70);
        const KnownPlace place{random_.number(), random_.number()};
        text += bitLine(net + "[" + std::to_string(bit) + "]", place);
        if (added.places.size() <= bit) {
            added.places.resize(bit + 1);
        }
        added.places[bit] = place;
    }
    kernel.registers.push_back(added);
}

StatedInput RandomInputs::logicLocations(const std::vector<KnownKernel>& project) {
    StatedInput result;
    result.text = "; locations\nRevision 3\n";
    for (const KnownKernel& kernel : project) {
        KnownKernel found;
        found.name = kernel.name;
        for (const std::string& path : kernel.instancePaths) {
            for (const auto* variables : {&kernel.arguments, &kernel.variables}) {
                for (const KnownVariable& variable : *variables) {
                    if (!random_.onceIn(3)) {
                        const std::string net = path + "/inst/" + variable.hardwareName;
                        addRegister(found, net, result.text);
                    }
                    result.text += random_.anyOf({"", "\n", "; x\n", "Bit 1 2 3 TILE 0 Ram=B\n"});
                }
            }
        }
        result.kernels.push_back(found);
        result.text += bitLine("nobody/" + word(), {1, 2});
    }
    return result;
}

StatedInput RandomInputs::ramReport(const std::vector<KnownKernel>& project) {
    StatedInput result;
    result.text = "8. Block Ram / URAM Memory Power - Instantiated\n"
                  "3. Memory Utilization - Inferred\n";
    for (const KnownKernel& kernel : project) {
        for (const std::string& path : kernel.instancePaths) {
            result.text += "| " + path + "/" + word() + " | RAMB18 |\n";
        }
        result.text += "| " + word() + " | " + random_.anyOf({"RAMB36", "LUT", ""}) + " |\n";
    }
    result.text += "4. Memory Performance - Inferred\n";
    return result;
}

} // namespace consolidator::test
