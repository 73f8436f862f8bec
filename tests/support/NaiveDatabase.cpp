#include "tests/support/NaiveDatabase.h"

#include "tests/support/Bytes.h"
#include "tests/support/NaiveConditions.h"

#include <algorithm>
#include <cstddef>

namespace consolidator::test {

namespace {

/// Takes fields from the front of a file's bytes. After the first one that is not there whole,
/// nothing more is taken.
class Fields {
public:
    explicit Fields(std::string_view bytes) : rest_(bytes) {}

    bool failed() const { return failed_; }

    std::string_view take(std::uint64_t size) {
        if (failed_ || size > rest_.size()) {
            failed_ = true;
            return {};
        }
        const std::string_view result = rest_.substr(0, size);
        rest_.remove_prefix(size);
        return result;
    }

    std::uint64_t number(int width) {
        std::uint64_t result = 0;
        int shift = 0;
        for (const char byte : take(static_cast<std::uint64_t>(width))) {
            result |= std::uint64_t{static_cast<unsigned char>(byte)} << shift;
            shift += 8;
        }
        return result;
    }

    std::uint32_t u32() { return static_cast<std::uint32_t>(number(4)); }

    /// A text up to its first zero byte.
    std::string text() {
        const std::string_view bytes = take(u32());
        return std::string(bytes.substr(0, bytes.find('\0')));
    }

    /// Elements behind their count, as far as they are there.
    template <typename TakeElement>
    auto list(TakeElement takeElement) {
        std::vector<decltype(takeElement())> result;
        for (std::uint64_t left = u32(); left > 0 && !failed_; --left) {
            result.push_back(takeElement());
        }
        return result;
    }

private:
    std::string_view rest_;
    bool failed_ = false;
};

std::vector<KnownPlace> takePlaces(Fields& fields) {
    return fields.list([&] {
        KnownPlace place;
        place.address = fields.u32();
        place.offset = fields.u32();
        return place;
    });
}

std::vector<KnownVariable> takeVariables(Fields& fields) {
    return fields.list([&] {
        KnownVariable variable;
        variable.sourceName = fields.text();
        variable.hardwareName = fields.text();
        variable.typeText = fields.text();
        variable.instances = fields.list([&] { return takePlaces(fields); });
        return variable;
    });
}

KnownRegister takeRegister(Fields& fields) {
    KnownRegister result;
    result.netName = fields.text();
    result.places = takePlaces(fields);
    return result;
}

KnownCondition takeCondition(Fields& fields) {
    KnownCondition result;
    result.kind = fields.u32();
    result.text = fields.text();
    if (result.kind == 2) {
        result.line = fields.u32();
        result.file = fields.text();
    }
    return result;
}

KnownKernel takeKernel(Fields& fields) {
    const auto takeText = [&] { return fields.text(); };
    KnownKernel kernel;
    kernel.name = fields.text();
    kernel.instancePaths = fields.list(takeText);
    kernel.type = fields.u32();
    kernel.arguments = takeVariables(fields);
    kernel.variables = takeVariables(fields);
    kernel.registers = fields.list([&] { return takeRegister(fields); });
    kernel.conditions = fields.list([&] { return takeCondition(fields); });
    kernel.brams = fields.list(takeText);
    return kernel;
}

/// False when a record was not there whole; those before it are taken.
bool takeKernels(Fields fields, std::vector<KnownKernel>& kernels) {
    const std::uint32_t count = fields.u32();
    for (std::uint32_t i = 0; i < count && !fields.failed(); ++i) {
        KnownKernel kernel = takeKernel(fields);
        if (!fields.failed()) {
            kernels.push_back(kernel);
        }
    }
    return !fields.failed();
}

/// The file from an offset on, which counts as a signed 32-bit number; nothing from a negative one.
std::optional<std::string_view> from(std::string_view file, std::uint64_t offset) {
    const auto position = static_cast<std::int32_t>(static_cast<std::uint32_t>(offset));
    if (position < 0) {
        return std::nullopt;
    }
    return file.substr(std::min(static_cast<std::size_t>(position), file.size()));
}

/// Takes in one section; false where reading ends.
bool takeSection(NaiveDatabase& database, std::string_view file, NaiveDatabase::Section& section,
                 std::uint64_t offset) {
    if (section.size == 0xFFFFFFFF) {
        section.size = 0xFFFFFFFE;
    }
    if (section.type > 3) {
        database.stoppedAtUnknownType = true;
        return false;
    }
    if (section.type == 3) {
        return true;
    }
    const std::optional<std::string_view> payload = from(file, offset);
    if (!payload) {
        return false;
    }
    Fields fields(*payload);
    if (section.type == 2) {
        return takeKernels(fields, database.kernels);
    }
    const std::string_view bytes = fields.take(section.size);
    if (section.type == 1) {
        database.dwarf.reset();
        if (!fields.failed()) {
            database.dwarf = bytes;
        }
    } else if (!fields.failed()) {
        database.project = bytes.substr(0, bytes.find('\0'));
    }
    return !fields.failed();
}

template <typename Element, typename Same>
void addUnless(std::vector<Element>& elements, const Element& element, Same same) {
    if (std::none_of(elements.begin(), elements.end(), same)) {
        elements.push_back(element);
    }
}

void addVariables(std::vector<KnownVariable>& to, const std::vector<KnownVariable>& from) {
    for (const KnownVariable& variable : from) {
        const KnownVariable added{variable.sourceName, variable.hardwareName, variable.typeText};
        addUnless(to, added, [&](const KnownVariable& known) {
            return known.sourceName == variable.sourceName;
        });
    }
}

void mergeInto(KnownKernel& known, const KnownKernel& other) {
    if (known.type == 3) {
        known.type = other.type;
    }
    for (const std::string& path : other.instancePaths) {
        addUnless(known.instancePaths, path, [&](const std::string& old) { return old == path; });
    }
    addVariables(known.arguments, other.arguments);
    addVariables(known.variables, other.variables);
    for (const KnownRegister& added : other.registers) {
        addUnless(known.registers, added,
                  [&](const KnownRegister& old) { return old.netName == added.netName; });
    }
    for (const KnownCondition& added : other.conditions) {
        addUnless(known.conditions, added, [&](const KnownCondition& old) { return old == added; });
    }
}

bool hasSection(const NaiveDatabase& database, std::uint32_t type) {
    return std::ranges::any_of(database.sections,
                               [type](const auto& section) { return section.type == type; });
}

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

unsigned bitWidthOf(const std::string& type) {
    if (contains(type, "*")) {
        return 64;
    }
    return contains(type, "char") ? 8 : 32;
}

/// Fills in what the JSON form says beside the record's own fields.
void deriveJsonFields(KnownKernel& kernel) {
    kernel.pathSuffix = "/inst";
    for (KnownVariable& argument : kernel.arguments) {
        argument.bitWidth = bitWidthOf(argument.typeText);
        if (contains(argument.typeText, "float") || contains(argument.typeText, "double")) {
            kernel.pathSuffix = "/U0";
        }
    }
    for (KnownVariable& variable : kernel.variables) {
        variable.bitWidth = bitWidthOf(variable.typeText);
    }
}

void translateConditions(KnownKernel& kernel) {
    std::vector<KnownCondition> translated;
    for (KnownCondition condition : kernel.conditions) {
        if (const auto text = naiveTranslation(condition.text)) {
            condition.text = *text;
            translated.push_back(condition);
        }
    }
    kernel.conditions = translated;
}

/// The payload of a section, whose size it sets.
std::string payloadOf(NaiveDatabase& database, NaiveDatabase::Section& section) {
    std::string payload;
    switch (section.type) {
    case 0:
        payload = database.project;
        break;
    case 1:
        payload = database.dwarf.value_or("").substr(0, section.size);
        break;
    case 2:
        payload = knownKernelData(database.kernels);
        break;
    case 3:
        for (KnownKernel& kernel : database.kernels) {
            translateConditions(kernel);
            deriveJsonFields(kernel);
        }
        payload = knownJson(database.kernels);
        break;
    default:
        return {}; // an entry of unknown type keeps its size
    }
    section.size = static_cast<std::uint32_t>(payload.size());
    return payload;
}

} // namespace

NaiveDatabase NaiveDatabase::read(const std::string& bytes) {
    NaiveDatabase database;
    Fields fields(bytes);
    const bool isDatabase = fields.u32() == 0xBEEFDAD4;
    const std::uint32_t major = fields.u32();
    const std::uint32_t minor = fields.u32();
    const std::uint32_t count = fields.u32();
    database.complete = isDatabase && !fields.failed();
    if (!database.complete) {
        return database;
    }
    database.major = major;
    database.minor = minor;
    std::vector<std::uint64_t> offsets;
    for (std::uint32_t i = 0; i < count; ++i) {
        Fields entry(fields.take(24));
        if (fields.failed()) {
            database.complete = false;
            return database;
        }
        Section section;
        section.type = entry.u32();
        section.padding1 = entry.u32();
        offsets.push_back(entry.number(8));
        section.size = entry.u32();
        section.padding2 = entry.u32();
        database.sections.push_back(section);
    }
    for (std::size_t i = 0; i < offsets.size() && database.complete; ++i) {
        database.complete = takeSection(database, bytes, database.sections[i], offsets[i]);
    }
    return database;
}

void NaiveDatabase::setProject(std::string_view name) {
    sections.push_back({.type = 0});
    project = name;
}

void NaiveDatabase::addDwarf(std::string_view bytes) {
    if (!bytes.empty() && !dwarf && !hasSection(*this, 1)) {
        sections.push_back({.type = 1, .size = static_cast<std::uint32_t>(bytes.size())});
        dwarf = bytes;
    }
}

void NaiveDatabase::merge(const KnownKernel& kernel) {
    for (KnownKernel& known : kernels) {
        if (known.name == kernel.name) {
            mergeInto(known, kernel);
            return;
        }
    }
    kernels.push_back(kernel);
}

std::string NaiveDatabase::write() {
    if (!hasSection(*this, 3)) {
        sections.push_back({.type = 3});
    }
    if (!kernels.empty() && !hasSection(*this, 2)) {
        sections.push_back({.type = 2});
    }
    std::string table;
    std::string payloads;
    for (Section& section : sections) {
        const std::uint64_t offset = 16 + 24 * sections.size() + payloads.size();
        payloads += payloadOf(*this, section);
        table += u32(section.type) + u32(section.padding1) + u64(offset) + u32(section.size) +
                 u32(section.padding2);
    }
    return header(static_cast<std::uint32_t>(sections.size())) + table + payloads;
}

} // namespace consolidator::test
