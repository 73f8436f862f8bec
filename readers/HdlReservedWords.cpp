#include "readers/HdlReservedWords.h"

#include <array>

namespace consolidator {

namespace {

constexpr std::string_view suffix = "_r";

// Some words stand in more than one group. "rtanif1" and "untis" are no slips of this program: the
// ports in use are named by this very list, so they stay, and "rtranif1" and "units" stay out.
constexpr auto reservedWords = std::to_array<std::string_view>(
    {// Keywords of both languages, in alphabetical order.
     "abs", "access", "after", "alias", "all", "and", "architecture", "array", "assert",
     "attribute", "begin", "block", "body", "buffer", "bus", "case", "casex", "casez", "cell",
     "cmos", "config", "deassign", "default", "defparam", "design", "disable", "edge", "else",
     "end", "endcase", "endconfig", "endmodule", "endfunction", "endgenerate", "endprimitive",
     "endspecify", "endtable", "endtask", "event", "for", "force", "forever", "fork", "function",
     "generate", "genvar", "highz0", "highz1", "if", "ifnone", "initial", "inout", "input",
     "instance", "integer", "join", "large", "liblist", "library", "localparam", "macromodule",
     "medium", "module", "nand", "negedge", "nmos", "none", "nor", "noshowcancelled", "not",
     "notif0", "notif1", "or", "output", "parameter", "pulsestyle_onevent", "pulsestyle_ondetect",
     "pmos", "posedge", "primitive", "pull0", "pull1", "pullup", "pulldown", "real", "realtime",
     "reg", "release", "repeat", "rcmos", "rnmos", "rpmos", "rtran", "rtranif0", "rtanif1",
     "scalared", "showcancelled", "signed", "small", "specify", "specparam", "strength", "strong0",
     "strong1", "supply0", "supply1", "table", "task", "time", "tran", "tranif0", "tranif1", "tri",
     "tri1", "tri0", "triand", "trior", "trireg", "use", "vectored", "wait", "wand", "weak0",
     "weak1", "while", "wire", "wor",
     // A second alphabetical run of keywords of both languages.
     "always", "assign", "automatic", "begin", "buf", "bufif0", "bufif1", "case", "component",
     "configuration", "constant", "disconnect", "downto", "else", "elsif", "end", "entity", "exit",
     "file", "for", "function", "generate", "generic", "group", "guarded", "if", "impure", "in",
     "inertial", "inout", "is", "label", "library", "linkage", "literal", "loop", "map", "mod",
     "nand", "new", "next", "nor", "not", "null", "of", "on", "open", "or", "others", "out",
     "package", "port", "postponed", "procedure", "process", "pure", "range", "record", "register",
     "reject", "rem", "report", "return", "rol", "ror", "select", "severity", "signal", "shared",
     "sla", "sll", "sra", "srl", "subtype", "then", "to", "transport", "type", "unaffected",
     "untis", "until", "use", "variable", "wait", "when", "while", "with", "xnor", "xor",
     // VHDL predefined attribute names.
     "active", "ascending", "base", "delayed", "driving", "driving_value", "event", "falling_edge",
     "high", "image", "instance_name", "last_active", "last_event", "last_value", "left", "leftof",
     "length", "low", "path_name", "pos", "pred", "quiet", "reverse_range", "right", "rightof",
     "rising_edge", "simple_name", "stable", "succ", "transaction", "val", "value",
     // VHDL and IEEE library type names.
     "bit", "bit_vector", "boolean", "character", "integer", "line", "natural", "positive", "real",
     "signed", "std_logic", "std_logic_vector", "string", "text", "time", "unsigned",
     // VHDL text input and output operations.
     "endfile", "file_close", "file_open", "read", "readline", "write", "writeline"});
static_assert(reservedWords.size() == 271);

} // namespace

HdlReservedWords::HdlReservedWords() : words_(reservedWords.begin(), reservedWords.end()) {}

const HdlReservedWords& HdlReservedWords::shared() {
    static const HdlReservedWords words;
    return words;
}

std::string HdlReservedWords::sourceName(std::string_view hardwareName) const {
    // The first "_r" of the name has to be its end: with one more before it, the name stays.
    if (hardwareName.size() > suffix.size() &&
        hardwareName.find(suffix) == hardwareName.size() - suffix.size()) {
        const std::string_view stem = hardwareName.substr(0, hardwareName.size() - suffix.size());
        if (words_.contains(stem)) {
            return std::string(stem);
        }
    }
    return std::string(hardwareName);
}

std::string HdlReservedWords::hardwareName(std::string_view sourceName) const {
    std::string name(sourceName);
    if (words_.contains(sourceName)) {
        name += suffix;
    }
    return name;
}

} // namespace consolidator
