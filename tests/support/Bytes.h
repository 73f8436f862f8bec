// Binary records and databases written out by hand, for tests to expect or to read.
//
//     DatabaseBuilder database;
//     database.section(0, "demo").section(2, u32(1) + record({.name = "k"}));
//     directory.write("db.bin", database.bytes());
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace consolidator::test {

/// The number's bytes, least significant first.
std::string u32(std::uint32_t number);
std::string u64(std::uint64_t number);

/// The length as u32, then the bytes.
std::string text(std::string_view bytes);

/// The bytes of a string literal, its zero bytes included: bytes("a\0b").
template <std::size_t size>
std::string bytes(const char (&literal)[size]) {
    return {literal, size - 1};
}

/// The elements one after the other, behind their count.
std::string list(const std::vector<std::string>& elements);

/// A Variable; `locations` is the part behind the three names, without instances by default.
std::string variable(std::string_view sourceName, std::string_view hardwareName,
                     std::string_view typeText, const std::vector<std::string>& locations = {});

/// A condition of kind Start, Stop or an error kind.
std::string condition(std::uint32_t kind, std::string_view text);

/// A condition of kind FileLine.
std::string condition(std::string_view text, std::uint32_t line, std::string_view file);

/// One location: address, then offset.
std::string location(std::uint32_t address, std::uint32_t offset);

/// A HardwareVariable; `locations` as location() gives them.
std::string hardwareVariable(std::string_view name, const std::vector<std::string>& locations);

/// The fields of a Kernel; every list holds binary elements.
struct Record {
    std::string_view name = {};
    std::vector<std::string> instancePaths = {}; ///< Plain texts.
    std::uint32_t type = 3;
    std::vector<std::string> arguments = {};
    std::vector<std::string> variables = {};
    std::vector<std::string> hardwareVariables = {};
    std::vector<std::string> conditions = {};
    std::vector<std::string> brams = {}; ///< Plain texts.
};

/// A Kernel's binary form.
std::string record(const Record& fields);

/// A header with the right magic number.
std::string header(std::uint32_t sections, std::uint32_t major = 1, std::uint32_t minor = 1);

/// A table entry with zero padding.
std::string entry(std::uint32_t type, std::uint64_t offset, std::uint32_t size);

/// Puts a database together: header, table with the right offsets and sizes, payloads.
class DatabaseBuilder {
public:
    DatabaseBuilder& section(std::uint32_t type, std::string_view payload);
    DatabaseBuilder& version(std::uint32_t major, std::uint32_t minor);
    std::string bytes() const;

private:
    struct Section {
        std::uint32_t type;
        std::string payload;
    };
    std::vector<Section> sections_;
    std::uint32_t major_ = 1;
    std::uint32_t minor_ = 1;
};

} // namespace consolidator::test
