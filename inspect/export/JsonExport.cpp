#include "inspect/export/JsonExport.h"

#include "inspect/export/JsonWriter.h"
#include "query/Bits.h"
#include "query/InstanceFinder.h"
#include "query/KernelView.h"
#include "query/Words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace consolidator::inspect {

namespace {

// Bytes as text (RFC 4648, section 4).

/// Large data can be encoded piece by piece: the texts of pieces whose sizes are multiples of this,
/// but for the last one, make up the text of the whole.
constexpr std::size_t base64Group = 3;

constexpr std::string_view base64Digits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Appends the four characters of one to three bytes.
void appendGroup(std::string& text, std::string_view group) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < base64Group; ++i) {
        bits = bits << 8 | (i < group.size() ? static_cast<std::uint8_t>(group[i]) : 0U);
    }
    for (std::size_t i = 0; i <= base64Group; ++i) {
        text += i <= group.size() ? base64Digits[bits >> (18 - 6 * i) & 0x3F] : '=';
    }
}

/// The bytes in Base64, padded with "=" to a multiple of four characters: "TWE=" for "Ma".
std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + base64Group - 1) / base64Group * (base64Group + 1));
    for (std::size_t at = 0; at < bytes.size(); at += base64Group) {
        appendGroup(text, bytes.substr(at, base64Group));
    }
    return text;
}

/// Version of the document's form, as the schema gives it.
constexpr unsigned formatVersion = 1;

/// Writes one document through one of the writers of JsonWriter.h.
template <typename Writer>
class DocumentWriter {
public:
    explicit DocumentWriter(std::ostream& out) : stream_(out), writer_(stream_) {}

    void write(const Database& database, bool withDwarf) {
        writer_.StartObject();
        writeNumber(writer_, "format", formatVersion);
        writer_.Key("version");
        writer_.StartObject();
        writeNumber(writer_, "major", database.header().majorVersion);
        writeNumber(writer_, "minor", database.header().minorVersion);
        writer_.EndObject();
        writer_.Key("complete");
        writer_.Bool(database.error().empty());
        writeTextOrNull(writer_, "project",
                        database.project().empty() ? nullptr : &database.project());
        writeDwarf(database.dwarf(), withDwarf);
        list("kernels", database.kernels(), [this](const Kernel& kernel) { write(kernel); });
        writer_.EndObject();
        stream_.Put('\n');
        stream_.Flush();
    }

private:
    /// Ends early when nobody takes the text any more.
    template <typename Elements, typename WriteOne>
    void list(const char* key, const Elements& elements, WriteOne writeOne) {
        writer_.Key(key);
        writer_.StartArray();
        for (const auto& element : elements) {
            if (!stream_.good()) {
                break;
            }
            writeOne(element);
        }
        writer_.EndArray();
    }

    void writeDwarf(const std::optional<std::string>& dwarf, bool withBytes) {
        writer_.Key("dwarf");
        if (!dwarf) {
            writer_.Null();
            return;
        }
        writer_.StartObject();
        writeNumber(writer_, "size", dwarf->size());
        if (withBytes) {
            writer_.Key("base64");
            writeBase64(*dwarf);
        }
        writer_.EndObject();
    }

    /// The writer takes a text only as a whole. For this one it writes the opening quote.
    void writeBase64(std::string_view bytes) {
        constexpr std::size_t piece = base64Group * 4096;
        writer_.RawValue("\"", 1, rapidjson::kStringType);
        for (; !bytes.empty() && stream_.good();
             bytes.remove_prefix(std::min(piece, bytes.size()))) {
            stream_.put(base64(bytes.substr(0, piece)));
        }
        stream_.Put('"');
    }

    void write(const Kernel& kernel) {
        writer_.StartObject();
        writeText(writer_, "name", kernel.name());
        writer_.Key("type");
        writer_.StartObject();
        writeNumber(writer_, "number", static_cast<std::uint32_t>(kernel.type()));
        writeText(writer_, "name", std::string(label(kernel.type())));
        writer_.EndObject();
        const auto writeElement = [this](const std::string& value) { writeText(writer_, value); };
        list("instances", kernel.instancePaths(), writeElement);
        const auto writeVariable = [this](const Variable& variable) { write(variable); };
        list("arguments", kernel.arguments(), writeVariable);
        list("variables", kernel.variables(), writeVariable);
        writeRegisters(kernel);
        list("conditions", kernel.breakableConditions(),
             [this](const BreakableCondition& condition) { write(condition); });
        list("brams", kernel.brams(), writeElement);
        writer_.EndObject();
    }

    void write(const Variable& variable) {
        writer_.StartObject();
        writeText(writer_, "source", variable.sourceName);
        writeText(writer_, "hardware", variable.hardwareName);
        writeText(writer_, "type", variable.typeText);
        writeNumber(writer_, "width", variable.bitWidth());
        if (!variable.locations.empty()) {
            list("locations", variable.locations, [this](const auto& locations) {
                writer_.StartObject();
                writePlaces(locations);
                writer_.EndObject();
            });
        }
        writer_.EndObject();
    }

    void writeRegisters(const Kernel& kernel) {
        InstanceFinder finder(kernel.instancePaths());
        list("registers", kernel.hardwareVariables(), [&](const HardwareVariable& variable) {
            const std::optional<std::uint32_t> instance = finder.instanceOf(variable.name);
            writer_.StartObject();
            writeText(writer_, "net", variable.name);
            writeText(writer_, "hardware", std::string(lastComponent(variable.name)));
            writeTextOrNull(writer_, "instance",
                            instance ? &kernel.instancePaths()[*instance] : nullptr);
            writePlaces(variable.locations);
            writer_.EndObject();
        });
    }

    /// The number of all bits, and the places of those that have one.
    template <typename Locations>
    void writePlaces(const Locations& locations) {
        writeNumber(writer_, "width", locations.size());
        writer_.Key("bits");
        writer_.StartArray();
        forEachLocatedBit(locations, [this](std::uint32_t bit, LogicLocation location) {
            writePlace(bit, location);
        });
        writer_.EndArray();
    }

    /// There are millions of these, and in no layout should they take more than a line.
    void writePlace(std::uint32_t bit, LogicLocation location) {
        place_.clear();
        place_ += '{';
        addToPlace("\"bit\"", bit);
        place_ += Writer::comma;
        addToPlace("\"address\"", location.address);
        place_ += Writer::comma;
        addToPlace("\"offset\"", location.offset);
        place_ += '}';
        writer_.RawValue(place_.data(), place_.size(), rapidjson::kObjectType);
    }

    void addToPlace(std::string_view quotedKey, std::uint32_t value) {
        std::array<char, 10> digits{}; // the most that a number has
        char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
        place_ += quotedKey;
        place_ += Writer::colon;
        place_.append(digits.data(), end);
    }

    void write(const BreakableCondition& condition) {
        writer_.StartObject();
        writer_.Key("kind");
        const std::string_view kind = conditionKind(condition);
        writer_.String(kind.data(), static_cast<rapidjson::SizeType>(kind.size()));
        if (condition.kind == BreakableCondition::FileLine) {
            writeText(writer_, "file", condition.file);
            writeNumber(writer_, "line", condition.line);
        } else if (condition.kind > BreakableCondition::FileLine) {
            writeNumber(writer_, "number", condition.kind);
        }
        writeText(writer_, "condition", condition.condition);
        writer_.EndObject();
    }

    JsonStream stream_;
    Writer writer_;
    std::string place_; ///< Text of a bit's place, kept for its memory.
};

} // namespace

void exportJson(const Database& database, const JsonOptions& options, std::ostream& out) {
    if (options.layout == JsonOptions::Layout::Pretty) {
        DocumentWriter<IndentingWriter>(out).write(database, options.withDwarf);
    } else {
        DocumentWriter<CompactWriter>(out).write(database, options.withDwarf);
    }
}

} // namespace consolidator::inspect
