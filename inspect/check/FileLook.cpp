#include "inspect/check/FileLook.h"

#include "shared/Words.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace consolidator::inspect {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view databaseMagic = "\xD4\xDA\xEF\xBE";

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool beginsWithDigit(std::string_view word) {
    return !word.empty() && word.front() >= '0' && word.front() <= '9';
}

/// What a line of this kind occurs in.
Content contentOfLine(std::string_view line) {
    if (contains(line, "Memory Utilization - Inferred")) {
        return InputKind::RamReport;
    }
    const std::string_view first = takeWord(line);
    const std::string_view second = takeWord(line);
    if (first == "Bit" && beginsWithDigit(second)) {
        return InputKind::LogicLocations;
    }
    if ((first == "Begin" && second == "Function") || (first == "RTL" && !second.empty())) {
        return InputKind::Hls;
    }
    if (first == "version:" || first == "type:" || (first == "instance" && second == "path:")) {
        return InputKind::Hierarchy;
    }
    return OtherContent::Unknown;
}

Content contentOfXml(std::string_view head) {
    if (contains(head, "<vd:acceleratorMap") || contains(head, "<vd:arg")) {
        return InputKind::AuxiliaryXml;
    }
    if (contains(head, "<project")) {
        return InputKind::KernelXml;
    }
    return OtherContent::Xml;
}

/// Whether many bytes are none of a text. Texts may hold a few of them by mistake.
bool isBinary(std::string_view head) {
    const auto count = std::ranges::count_if(
        head, [](char c) { return static_cast<unsigned char>(c) < ' ' && !isSpace(c); });
    constexpr std::size_t few = 3;
    return static_cast<std::size_t>(count) > std::max(few, head.size() / 32);
}

std::string headOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string head(FileLook::longestHead, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    head.resize(static_cast<std::size_t>(file.gcount()));
    return head;
}

/// Carriage returns are white space to the other readers.
bool mindsCarriageReturns(InputKind kind) {
    return kind == InputKind::Hls || kind == InputKind::RamReport;
}

void reportText(const FileLook& look, InputKind kind, const std::string& path, Findings& findings) {
    const std::string_view mark = byteOrderMarkOf(look.head);
    if (!mark.empty() && kind != InputKind::KernelXml) {
        findings.add({path, 1, Severity::Warning, Code::ByteOrderMark,
                      "the file begins with a byte order mark (" + std::string(mark) +
                          "), which is read as a part of its first word"});
    }
    if (mindsCarriageReturns(kind) && hasCarriageReturns(look.head)) {
        findings.add({path, 1, Severity::Warning, Code::CarriageReturns,
                      kind == InputKind::Hls
                          ? "lines end with a carriage return and a newline (CRLF): "
                            "conditions are cut off at "
                            "the wrong place, and empty lines are not accepted"
                          : "lines end with a carriage return and a newline (CRLF): no "
                            "heading is recognised"});
    }
}

void reportHlsName(const std::string& path, Findings& findings) {
    const std::string name = path.substr(path.rfind('/') + 1);
    constexpr std::size_t extension = 4;
    if (name.size() <= extension || name[name.size() - extension] != '.') {
        const std::string kernel =
            name.size() < extension ? name : name.substr(0, name.size() - extension);
        findings.add(
            {path, 0, Severity::Warning, Code::KernelName,
             "the kernel's name is the file's name without its last four characters, here " +
                 quotedName(kernel)});
    }
}

} // namespace

Content contentOf(std::string_view head) {
    if (head.starts_with(databaseMagic)) {
        return OtherContent::Database;
    }
    if (head.starts_with(utf8Mark)) {
        head.remove_prefix(utf8Mark.size());
    }
    const bool binary = isBinary(head) && byteOrderMarkOf(head).empty();
    while (!head.empty() && isSpace(head.front())) {
        head.remove_prefix(1);
    }
    if (head.starts_with('<')) {
        return contentOfXml(head);
    }
    while (!head.empty()) {
        const std::size_t end = std::min(head.find('\n'), head.size() - 1);
        const Content content = contentOfLine(head.substr(0, end + 1));
        if (content != Content(OtherContent::Unknown)) {
            return content;
        }
        head.remove_prefix(end + 1);
    }
    return binary ? OtherContent::Binary : OtherContent::Unknown;
}

std::string_view describe(Content content) {
    if (const auto* const kind = std::get_if<InputKind>(&content)) {
        return inputOption(*kind).content;
    }
    switch (std::get<OtherContent>(content)) {
    case OtherContent::Xml:
        return "an XML file of another kind";
    case OtherContent::Database:
        return "a consolidated file";
    case OtherContent::Binary:
        return "a binary file";
    case OtherContent::Unknown:
        break;
    }
    return "nothing that is known";
}

std::string optionFor(Content content) {
    if (const auto* const kind = std::get_if<InputKind>(&content)) {
        return {'-', inputOption(*kind).letter};
    }
    return content == Content(OtherContent::Database) ? "-f" : "";
}

std::string_view compressionOf(std::string_view head) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 5> beginnings{{
        {"\x1F\x8B"sv, "gzip"},
        {"PK\x03\x04"sv, "zip"},
        {"BZh"sv, "bzip2"},
        {"\xFD\x37zXZ\x00"sv, "xz"},
        {"\x28\xB5\x2F\xFD"sv, "zstd"},
    }};
    const auto* const found = std::ranges::find_if(
        beginnings, [head](const auto& beginning) { return head.starts_with(beginning.first); });
    return found == beginnings.end() ? "" : found->second;
}

std::string_view byteOrderMarkOf(std::string_view head) {
    if (head.starts_with(utf8Mark)) {
        return "UTF-8";
    }
    return head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF") ? "UTF-16" : "";
}

bool hasCarriageReturns(std::string_view head) {
    const std::size_t newline = head.find('\n');
    return newline != std::string_view::npos && newline > 0 && head[newline - 1] == '\r';
}

std::string wholePathOf(const std::string& path) {
    std::error_code error;
    const std::filesystem::path whole = std::filesystem::canonical(path, error);
    return error ? path : whole.string();
}

FileLook FileLook::at(const std::string& path) {
    FileLook look;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    look.isFolder = std::filesystem::is_directory(status);
    look.isEmptyDevice =
        std::filesystem::is_character_file(status) && wholePathOf(path) == "/dev/null";
    look.isRegular = std::filesystem::is_regular_file(status);
    if (look.isRegular) {
        const std::uintmax_t size = std::filesystem::file_size(path, error);
        look.size = error ? 0 : size;
        look.head = headOf(path);
    }
    return look;
}

bool reportContent(const FileLook& look, InputKind kind, const std::string& path,
                   Findings& findings) {
    const std::string_view compression = compressionOf(look.head);
    if (!compression.empty()) {
        findings.add(
            {path, 0, Severity::Error, Code::Compressed,
             "is compressed (" + std::string(compression) + "): it must be unpacked first"});
        return true;
    }
    const Content content = contentOf(look.head);
    const Content wanted = kind == InputKind::Dwarf ? Content(OtherContent::Binary) : Content(kind);
    if (content == Content(OtherContent::Unknown) || content == wanted) {
        return false;
    }
    std::string text = "looks like " + std::string(describe(content));
    if (!optionFor(content).empty()) {
        text += ", which belongs to " + optionFor(content);
    }
    text += ", but is given with " + optionFor(kind) + " as " + std::string(describe(kind));
    findings.add({path, 0, Severity::Warning, Code::WrongKind, std::move(text)});
    // XML that nobody knows may be meant: then the reader knows better what is wrong with it.
    return content != Content(OtherContent::Xml);
}

bool reportLook(const FileLook& look, InputKind kind, const std::string& path, Findings& findings) {
    if ((look.isRegular && look.size == 0) || look.isEmptyDevice) {
        findings.add({path, 0, Severity::Warning, Code::Empty, "is empty"});
    }
    const bool isOfWrongKind = reportContent(look, kind, path, findings);
    reportText(look, kind, path, findings);
    if (kind == InputKind::Hls) {
        reportHlsName(path, findings);
    }
    return isOfWrongKind;
}

} // namespace consolidator::inspect
