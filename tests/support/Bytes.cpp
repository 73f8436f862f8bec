#include "tests/support/Bytes.h"

namespace consolidator::test {

namespace {

std::string littleEndian(std::uint64_t number, int width) {
    std::string result;
    for (int i = 0; i < width; ++i) {
        result += static_cast<char>((number >> (8 * i)) & 0xFF);
    }
    return result;
}

std::string textList(const std::vector<std::string>& texts) {
    std::string result = u32(static_cast<std::uint32_t>(texts.size()));
    for (const std::string& element : texts) {
        result += text(element);
    }
    return result;
}

} // namespace

std::string u32(std::uint32_t number) {
    return littleEndian(number, 4);
}

std::string u64(std::uint64_t number) {
    return littleEndian(number, 8);
}

std::string text(std::string_view bytes) {
    return u32(static_cast<std::uint32_t>(bytes.size())) + std::string(bytes);
}

std::string list(const std::vector<std::string>& elements) {
    std::string result = u32(static_cast<std::uint32_t>(elements.size()));
    for (const std::string& element : elements) {
        result += element;
    }
    return result;
}

std::string variable(std::string_view sourceName, std::string_view hardwareName,
                     std::string_view typeText, const std::vector<std::string>& locations) {
    return text(sourceName) + text(hardwareName) + text(typeText) + list(locations);
}

std::string condition(std::uint32_t kind, std::string_view conditionText) {
    return u32(kind) + text(conditionText);
}

std::string condition(std::string_view conditionText, std::uint32_t line, std::string_view file) {
    return u32(2) + text(conditionText) + u32(line) + text(file);
}

std::string location(std::uint32_t address, std::uint32_t offset) {
    return u32(address) + u32(offset);
}

std::string hardwareVariable(std::string_view name, const std::vector<std::string>& locations) {
    return text(name) + list(locations);
}

std::string record(const Record& fields) {
    return text(fields.name) + textList(fields.instancePaths) + u32(fields.type) +
           list(fields.arguments) + list(fields.variables) + list(fields.hardwareVariables) +
           list(fields.conditions) + textList(fields.brams);
}

std::string header(std::uint32_t sections, std::uint32_t major, std::uint32_t minor) {
    return u32(0xBEEFDAD4) + u32(major) + u32(minor) + u32(sections);
}

std::string entry(std::uint32_t type, std::uint64_t offset, std::uint32_t size) {
    return u32(type) + u32(0) + u64(offset) + u32(size) + u32(0);
}

DatabaseBuilder& DatabaseBuilder::section(std::uint32_t type, std::string_view payload) {
    sections_.push_back({type, std::string(payload)});
    return *this;
}

DatabaseBuilder& DatabaseBuilder::version(std::uint32_t major, std::uint32_t minor) {
    major_ = major;
    minor_ = minor;
    return *this;
}

std::string DatabaseBuilder::bytes() const {
    std::string result = header(static_cast<std::uint32_t>(sections_.size()), major_, minor_);
    std::uint64_t offset = 16 + 24 * sections_.size();
    for (const Section& section : sections_) {
        const auto size = static_cast<std::uint32_t>(section.payload.size());
        result += entry(section.type, offset, size);
        offset += size;
    }
    for (const Section& section : sections_) {
        result += section.payload;
    }
    return result;
}

} // namespace consolidator::test
