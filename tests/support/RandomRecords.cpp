#include "tests/support/RandomRecords.h"

#include "tests/support/Bytes.h"

#include <string_view>

namespace consolidator::test {

std::string RandomRecords::anyText() {
    std::string result;
    for (std::size_t count = random_.below(12); count > 0; --count) {
        switch (random_.below(4)) {
        case 0:
            result += static_cast<char>(1 + random_.below(255));
            break;
        case 1:
            result += random_.anyOf({"\"", "\\", " ", "\n", "\t", "/", "[3]", "\xff\xfe", "\x80"});
            break;
        default:
            result += static_cast<char>('a' + random_.below(26));
        }
    }
    return result;
}

std::string RandomRecords::cleanText() {
    std::string result;
    for (std::size_t count = random_.below(8); count > 0; --count) {
        result += random_.anyOf({"a", "k_1", "Z", " ", "/", "[3]", "{", "}", ":", ",", "'",
                                 "\xc3\xa4", "\xe2\x82\xac", "\xf0\x9f\x94\xa7", "0", "\x7f"});
    }
    return result;
}

std::string RandomRecords::text() {
    if (random_.onceIn(6)) {
        return {};
    }
    std::string piece = texts_ == Texts::Clean ? cleanText() : anyText();
    if (!random_.onceIn(40)) {
        return piece;
    }
    std::string longText;
    for (std::size_t count = random_.below(200); count > 0; --count) {
        longText += piece;
    }
    return longText;
}

std::string RandomRecords::name() {
    return random_.onceIn(4)
               ? text()
               : random_.anyOf({"", "k", "scale_rows", "checksum", "k_1", "top/k_1", "n", "n_r"});
}

std::string RandomRecords::conditionText() {
    if (random_.onceIn(5)) {
        return text();
    }
    if (random_.onceIn(6)) {
        return "(1'b1 == 1'b1)";
    }
    std::string result = random_.anyOf({"", "", "(", " "});
    for (std::size_t count = random_.below(6); count > 0; --count) {
        result += random_.anyOf({"state", "$i/x", "1'b1", "==", "&&", "!=", "_y", "(z", "0)", "7"});
        result += random_.anyOf({" ", " ", " ", "  ", "\t", ""});
    }
    return result + random_.anyOf({"", "", ")", " "});
}

KnownCondition RandomRecords::condition() {
    KnownCondition result;
    result.kind =
        random_.onceIn(8) ? random_.number() : static_cast<std::uint32_t>(random_.below(4));
    result.text = conditionText();
    if (result.kind == 2) {
        result.line = random_.number();
        result.file = text();
    }
    return result;
}

KnownVariable RandomRecords::variable() {
    const std::string type = random_.anyOf(
        {"int", "int*", "unsigned char", "float", "double", "", "char*", "floating", "struct a"});
    return {name(), name(), random_.onceIn(6) ? text() : type};
}

std::vector<KnownPlace> RandomRecords::places() {
    return random_.upTo(6, [&] {
        KnownPlace place;
        if (!random_.onceIn(3)) {
            place = {random_.number(), random_.number()};
        }
        return place;
    });
}

KnownVariable RandomRecords::locatedVariable() {
    KnownVariable result = variable();
    result.instances = random_.upTo(3, [&] { return places(); });
    return result;
}

KnownRegister RandomRecords::hardwareRegister() {
    return {"/" + name(), places()};
}

KnownKernel RandomRecords::kernel() {
    KnownKernel result;
    result.name = name();
    result.instancePaths = random_.upTo(4, [&] { return name(); });
    result.type =
        random_.onceIn(8) ? random_.number() : static_cast<std::uint32_t>(random_.below(5));
    result.arguments = random_.upTo(4, [&] { return variable(); });
    result.variables = random_.upTo(4, [&] { return variable(); });
    result.registers = random_.upTo(4, [&] { return hardwareRegister(); });
    result.conditions = random_.upTo(5, [&] { return condition(); });
    result.brams = random_.upTo(3, [&] { return name(); });
    return result;
}

KnownKernel RandomRecords::locatedKernel() {
    KnownKernel result = kernel();
    result.arguments = random_.upTo(4, [&] { return locatedVariable(); });
    result.variables = random_.upTo(4, [&] { return locatedVariable(); });
    return result;
}

std::vector<KnownKernel> RandomRecords::kernels() {
    return random_.upTo(4, [&] { return random_.onceIn(2) ? locatedKernel() : kernel(); });
}

std::string RandomRecords::section(std::uint32_t type) {
    switch (type) {
    case 0:
        return random_.anyOf({"demo", "demo", "a project", ""});
    case 2:
        return knownKernelData(kernels());
    default:
        return text();
    }
}

std::string RandomRecords::database() {
    DatabaseBuilder result;
    for (std::size_t count = random_.below(8); count > 0; --count) {
        const auto type = random_.onceIn(12) ? std::uint32_t{4} + random_.number() % 0xFFFFFF00
                                             : static_cast<std::uint32_t>(random_.below(4));
        result.section(type, section(type));
    }
    return result.bytes();
}

} // namespace consolidator::test
