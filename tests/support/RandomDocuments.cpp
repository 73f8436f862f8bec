#include "tests/support/RandomDocuments.h"

#include <map>
#include <vector>

namespace consolidator::test {

namespace {

constexpr std::size_t mostElements = 150;
constexpr std::size_t deepest = 12;

using Names = std::vector<std::string_view>;

/// The elements that may stand in an element. What readers look for is there more than once, so
/// that it comes more often.
const Names& childrenOf(std::string_view element) {
    static const std::map<std::string_view, Names> children{
        {"project", {"platform"}},
        {"platform", {"device", "device", "device", "version", "description", "board", "host"}},
        {"board", {"interfaces", "memories", "id", "build_flow"}},
        {"device", {"core", "core", "core", "systemClocks"}},
        {"systemClocks", {"clock"}},
        {"core", {"kernel", "kernel", "kernel", "kernel", "kernelClocks", "memories", "pipes"}},
        {"kernelClocks", {"clock"}},
        {"memories", {"instance", "memory"}},
        {"pipes", {"instance"}},
        {"kernel", {"arg", "arg", "arg", "arg", "module", "port", "instance", "FIFOInformation"}},
        {"module", {"module", "rtlPort"}},
        {"instance", {"addrRemap"}},
        {"FIFOInformation", {"FIFOInst"}},
        {"FIFOInst", {"Name", "ParentInst", "InterfaceList"}},
        {"InterfaceList", {"Interface"}}};
    static const Names none;
    const auto entry = children.find(element);
    return entry == children.end() ? none : entry->second;
}

const Names anyElement{"project", "platform", "device",      "core",  "kernel",   "arg",
                       "module",  "port",     "description", "Arg",   "Kernel",   "extra",
                       "kernel",  "arg",      "p:kernel",    "clock", "Interface"};

const Names values{"",
                   "a",
                   "b",
                   "n",
                   "input",
                   "input_r",
                   "wait_r",
                   "wait",
                   "_r",
                   "a_r_r",
                   "int",
                   "float*",
                   "rtanif1_r",
                   "&lt;1&gt;",
                   " spaces ",
                   "\xC3\xBC",
                   "a\nline\tbroken",
                   "&#x41;&amp;"};

const Names numbers{"0", "1", "4294967295", " 7\n", "+3", "0000000000000000000012"};
const Names noNumbers{"4294967296", "-1", "", "0x1", "18446744073709551616", "1 2", "++1"};

const Names fillers{"\n  ",
                    "text",
                    "<!-- <kernel name=\"no\"/> -->",
                    "<![CDATA[<arg name=\"no\"/>]]>",
                    "<?tool <arg/>?>",
                    "&#10;&amp;",
                    "\xC3\xBC",
                    "\r\n"};

const Names beginnings{"",
                       "",
                       "",
                       "<?xml version=\"1.0\"?>\n",
                       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- made by hand -->\n",
                       "\n\n<?tool?>\n"};
const Names oddBeginnings{"\xEF\xBB\xBF",
                          "<!DOCTYPE project>\n",
                          "<!DOCTYPE project SYSTEM \"missing.dtd\">\n",
                          "<!DOCTYPE project [<!ENTITY a \"b\">]>\n",
                          "<!DOCTYPE project [<!ATTLIST arg type CDATA \"int\">]>\n",
                          "<!DOCTYPE project [<!ENTITY a \"&a;\"><!ATTLIST x y CDATA \"&a;\">]>\n",
                          "<!DOCTYPE project [<!ELEMENT project>]>\n",
                          "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"};

} // namespace

std::string RandomDocuments::valid() {
    return document(false);
}

std::string RandomDocuments::odd() {
    return document(true);
}

std::string RandomDocuments::damaged() {
    std::string text = document(random_.onceIn(2));
    switch (random_.below(3)) {
    case 0:
        text.resize(random_.below(text.size()));
        break;
    case 1:
        text.insert(random_.below(text.size()),
                    text.substr(random_.below(text.size()), random_.below(200)));
        break;
    default:
        for (std::size_t count = random_.below(4) + 1; count > 0; --count) {
            text[random_.below(text.size())] = static_cast<char>(random_.below(256));
        }
    }
    return text;
}

std::string RandomDocuments::any() {
    switch (random_.below(3)) {
    case 0:
        return valid();
    case 1:
        return odd();
    default:
        return damaged();
    }
}

std::string RandomDocuments::document(bool isOdd) {
    isOdd_ = isOdd;
    elements_ = 0;
    text_ = random_.anyOf(isOdd_ && random_.onceIn(4) ? oddBeginnings : beginnings);
    addElement(isOdd_ && random_.onceIn(40) ? random_.anyOf(anyElement) : "project", 0);
    text_ += random_.onceIn(2) ? "\n" : "";
    return text_;
}

void RandomDocuments::addElement(std::string_view name, std::size_t depth) {
    ++elements_;
    text_.append("<").append(name);
    addAttributes(name);
    if (random_.onceIn(10)) {
        text_ += "/>";
        return;
    }
    text_ += ">";
    addContent(name, depth);
    text_.append("</").append(name).append(">");
}

void RandomDocuments::addAttributes(std::string_view element) {
    // No attribute may be there twice.
    for (const std::string_view name : {"type", "id", "name", "xmlns:p", "addressQualifier"}) {
        if (random_.onceIn(name == "name" || element == "arg" ? 2 : 6)) {
            const bool isNumber = name == "addressQualifier" && element == "arg";
            const bool isWrong = isNumber && isOdd_ && random_.onceIn(30);
            const Names& choices = isWrong ? noNumbers : isNumber ? numbers : values;
            const char quote = random_.onceIn(4) ? '\'' : '"';
            // A prefix must not be bound to nothing.
            text_.append(" ").append(name).append("=").append(1, quote);
            text_.append(name == "xmlns:p" ? "urn:p" : random_.anyOf(choices)).append(1, quote);
        }
    }
}

void RandomDocuments::addContent(std::string_view element, std::size_t depth) {
    const Names& children = childrenOf(element);
    for (std::size_t count = random_.below(7); count > 0; --count) {
        addFiller();
        const bool isStray = isOdd_ && random_.onceIn(6);
        if (depth < deepest && elements_ < mostElements && (isStray || !children.empty())) {
            addElement(random_.anyOf(isStray ? anyElement : children), depth + 1);
        }
    }
    addFiller();
}

void RandomDocuments::addFiller() {
    if (random_.onceIn(3)) {
        text_ += random_.anyOf(fillers);
    }
}

} // namespace consolidator::test
