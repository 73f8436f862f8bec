#include "inspect/check/CheckReport.h"

#include "inspect/export/JsonWriter.h"
#include "inspect/text/Style.h"
#include "inspect/text/Table.h"
#include "shared/Numbers.h"
#include "shared/Printable.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace consolidator::inspect {

namespace {

constexpr Table::Align right = Table::Align::Right;

/// The most names that are listed of a kernel.
constexpr std::size_t mostNames = 20;

/// For tables, in which the name comes again on many lines.
std::string nameOf(const Kernel& kernel) {
    return kernel.name().empty() ? "(no name)" : shortPrintable(kernel.name());
}

void printFinding(const Finding& finding, Console& console) {
    if (!finding.file.empty()) {
        console.out << printable(finding.file) << ':';
        if (finding.line > 0) {
            console.out << finding.line << ':';
        }
        console.out << ' ';
    }
    console.out << styledLabel(finding.severity, console.colour) << ": " << printable(finding.text)
                << '\n';
}

std::string text(const KernelCoverage::Count& count) {
    return std::to_string(count.located) + " of " + std::to_string(count.total);
}

void printCoverage(const CheckReport& report, Console& console) {
    Table table({{"kernel"},
                 {"instances", right},
                 {"arguments", right},
                 {"variables", right},
                 {"registers", right}});
    for (const KernelCoverage& kernel : report.coverage) {
        table.add({nameOf(*kernel.kernel), std::to_string(kernel.kernel->instancePaths().size()),
                   text(kernel.arguments), text(kernel.variables),
                   std::to_string(kernel.kernel->hardwareVariables().size())});
    }
    console.out << '\n' << bold("Coverage", console.colour) << '\n';
    if (table.empty()) {
        console.out << "  no kernel\n";
    } else {
        table.print(console.out, "  ", console.colour);
    }
    if (report.kernelsOfWrongKind > 0) {
        console.out << "  and " << inWords(report.kernelsOfWrongKind, "kernel")
                    << " made of files of another kind\n";
    }
}

std::string nearestNet(const MissingName& missing) {
    if (!missing.nearest) {
        return "none";
    }
    const NearNet& net = *missing.nearest;
    return printable(net.net) + (!net.hasName     ? " (other name)"
                                 : net.isInKernel ? " (no bit of it could be kept)"
                                                  : " (other path)");
}

void addNames(const KernelCoverage& kernel, bool searchedNets, Table& table) {
    const auto add = [&](std::string name, std::string hardwareName, std::string net) {
        std::vector<std::string> cells{nameOf(*kernel.kernel), std::move(name),
                                       std::move(hardwareName)};
        if (searchedNets) {
            cells.push_back(std::move(net));
        }
        table.add(std::move(cells));
    };
    const std::size_t listed = std::min(kernel.missing.size(), mostNames);
    for (std::size_t i = 0; i < listed; ++i) {
        const MissingName& missing = kernel.missing[i];
        add((missing.isArgument ? "argument " : "variable ") +
                printable(missing.variable->sourceName),
            printable(missing.variable->hardwareName), nearestNet(missing));
    }
    if (listed < kernel.missing.size()) {
        add("and " + std::to_string(kernel.missing.size() - listed) + " more", "", "");
    }
}

void printMissing(const CheckReport& report, Console& console) {
    std::vector<Table::Column> columns{{"kernel"}, {"name"}, {"hardware name"}};
    if (report.searchedNets) {
        columns.push_back({"nearest net"});
    }
    Table table(columns);
    for (const KernelCoverage& kernel : report.coverage) {
        addNames(kernel, report.searchedNets, table);
    }
    if (!table.empty()) {
        console.out << '\n' << bold("Without a location", console.colour) << '\n';
        table.print(console.out, "  ", console.colour);
        if (!report.searchedNets) {
            console.out << "  no logic-location file was searched\n";
        }
    }
}

// JSON

using Writer = CompactWriter;

/// The file and line of something; null where there is none.
void writePlace(Writer& json, const std::string& file, std::uint64_t line) {
    writeTextOrNull(json, "file", file.empty() ? nullptr : &file);
    if (line == 0) {
        json.Key("line");
        json.Null();
    } else {
        writeNumber(json, "line", line);
    }
}

void writeFinding(Writer& json, const Finding& finding) {
    json.StartObject();
    writePlace(json, finding.file, finding.line);
    writeText(json, "severity", std::string(label(finding.severity)));
    writeText(json, "code", std::string(word(finding.code)));
    writeText(json, "text", finding.text);
    json.EndObject();
}

void writeCount(Writer& json, const char* key, const KernelCoverage::Count& count) {
    json.Key(key);
    json.StartObject();
    writeNumber(json, "located", count.located);
    writeNumber(json, "total", count.total);
    json.EndObject();
}

void writeMissing(Writer& json, const MissingName& missing) {
    json.StartObject();
    writeText(json, "kind", missing.isArgument ? "argument" : "variable");
    writeText(json, "name", missing.variable->sourceName);
    writeText(json, "hardwareName", missing.variable->hardwareName);
    json.Key("nearest");
    if (missing.nearest) {
        json.StartObject();
        writeText(json, "net", missing.nearest->net);
        writePlace(json, missing.nearest->file, missing.nearest->line);
        json.Key("sameName");
        json.Bool(missing.nearest->hasName);
        json.Key("inInstance");
        json.Bool(missing.nearest->isInKernel);
        json.EndObject();
    } else {
        json.Null();
    }
    json.EndObject();
}

void writeKernel(Writer& json, const KernelCoverage& kernel) {
    json.StartObject();
    writeText(json, "kernel", kernel.kernel->name());
    writeNumber(json, "instances", kernel.kernel->instancePaths().size());
    writeCount(json, "arguments", kernel.arguments);
    writeCount(json, "variables", kernel.variables);
    writeNumber(json, "registers", kernel.kernel->hardwareVariables().size());
    json.Key("missing");
    json.StartArray();
    for (const MissingName& missing : kernel.missing) {
        writeMissing(json, missing);
    }
    json.EndArray();
    json.EndObject();
}

} // namespace

void printText(const CheckReport& report, Console& console) {
    for (const Finding& finding : report.findings.kept()) {
        printFinding(finding, console);
    }
    if (report.findings.dropped() > 0) {
        console.out << inWords(report.findings.dropped(), "more finding") << " not shown\n";
    }
    printCoverage(report, console);
    printMissing(report, console);
    console.out << '\n'
                << inWords(report.findings.count(Severity::Error), "error") << ", "
                << inWords(report.findings.count(Severity::Warning), "warning") << ", "
                << inWords(report.findings.count(Severity::Note), "note") << '\n';
    if (report.outcome) {
        console.out << printable(report.outcome->path)
                    << (report.outcome->isWritten() ? ": written"
                                                    : ": not written: " + report.outcome->reason)
                    << '\n';
    }
}

void printJson(const CheckReport& report, std::ostream& out) {
    JsonStream stream(out);
    Writer json(stream);
    json.StartObject();
    writeNumber(json, "errors", report.findings.count(Severity::Error));
    writeNumber(json, "warnings", report.findings.count(Severity::Warning));
    writeNumber(json, "notes", report.findings.count(Severity::Note));
    writeNumber(json, "mistakenKernels", report.kernelsOfWrongKind);
    if (report.outcome) {
        json.Key("written");
        json.Bool(report.outcome->isWritten());
    }
    json.Key("findings");
    json.StartArray();
    for (const Finding& finding : report.findings.kept()) {
        writeFinding(json, finding);
    }
    json.EndArray();
    json.Key("coverage");
    json.StartArray();
    for (const KernelCoverage& kernel : report.coverage) {
        writeKernel(json, kernel);
    }
    json.EndArray();
    json.EndObject();
    stream.Put('\n');
    stream.Flush();
}

} // namespace consolidator::inspect
