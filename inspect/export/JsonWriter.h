// JSON on its way out, valid whatever the texts hold. RapidJSON writes it, in blocks of characters,
// to a standard stream.
#pragma once

#include "shared/Utf8.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <rapidjson/prettywriter.h>
#include <rapidjson/writer.h>
#include <string>
#include <string_view>

namespace consolidator::inspect {

/// An output stream as RapidJSON's writers want one (hence the names), over a standard stream,
/// which gets the text in blocks: putting each character there would cost more than making it.
class JsonStream {
public:
    using Ch = char;

    /// `out` must outlive the stream.
    explicit JsonStream(std::ostream& out) : out_(out) {}
    ~JsonStream() = default;
    JsonStream(const JsonStream&) = delete;
    JsonStream& operator=(const JsonStream&) = delete;

    // NOLINTNEXTLINE(readability-identifier-naming)
    void Put(char character) {
        if (length_ == block_.size()) {
            Flush();
        }
        block_[length_++] = character;
    }

    /// What some of RapidJSON's encodings look for beside a stream.
    // NOLINTNEXTLINE(readability-identifier-naming)
    friend void PutUnsafe(JsonStream& stream, char character) { stream.Put(character); }

    void put(std::string_view text) {
        for (const char character : text) {
            Put(character);
        }
    }

    /// Passes on what is left. To be called at the end.
    void Flush() { // NOLINT(readability-identifier-naming)
        out_.write(block_.data(), static_cast<std::streamsize>(length_));
        length_ = 0;
    }

    /// False when the standard stream takes nothing any more: the rest need not be made.
    bool good() const { return out_.good(); }

private:
    std::ostream& out_;
    std::size_t length_ = 0;
    std::array<char, std::size_t{64} * 1024> block_; ///< Not initialised.
};

/// Text from a file, as RapidJSON's writers decode it: UTF-8, and U+FFFD for every byte that is
/// not. So a text is repaired while it is written, however long it is. It must end in a zero byte.
struct RepairedUtf8 : rapidjson::UTF8<> {
    // NOLINTNEXTLINE(readability-identifier-naming): RapidJSON's name
    static bool Decode(rapidjson::GenericStringStream<RepairedUtf8>& text, unsigned* codePoint) {
        constexpr std::size_t longest = 4;
        const std::size_t length = utf8Length({text.src_, strnlen(text.src_, longest)});
        if (length > 0) {
            return rapidjson::UTF8<>::Decode(text, codePoint);
        }
        text.Take();
        *codePoint = 0xFFFD;
        return true;
    }
};

/// Without blanks.
class CompactWriter : public rapidjson::Writer<JsonStream, RepairedUtf8> {
public:
    static constexpr std::string_view colon = ":";
    static constexpr std::string_view comma = ",";

    explicit CompactWriter(JsonStream& stream) : Writer(stream) {}
};

/// Indented, with a line for each value.
class IndentingWriter : public rapidjson::PrettyWriter<JsonStream, RepairedUtf8> {
public:
    static constexpr std::string_view colon = ": ";
    static constexpr std::string_view comma = ", ";

    explicit IndentingWriter(JsonStream& stream) : PrettyWriter(stream) {
        constexpr unsigned indentation = 2;
        SetIndent(' ', indentation);
    }
};

/// Writes a text as an element of a list.
template <typename Writer>
void writeText(Writer& json, const std::string& value) {
    json.String(value.c_str(), static_cast<rapidjson::SizeType>(value.size()));
}

/// Writes a text as a member of an object.
template <typename Writer>
void writeText(Writer& json, const char* key, const std::string& value) {
    json.Key(key);
    writeText(json, value);
}

/// The same for a text that may be missing: null, if there is none.
template <typename Writer>
void writeTextOrNull(Writer& json, const char* key, const std::string* value) {
    json.Key(key);
    if (value != nullptr) {
        writeText(json, *value);
    } else {
        json.Null();
    }
}

/// Writes a number as a member of an object.
template <typename Writer>
void writeNumber(Writer& json, const char* key, std::uint64_t value) {
    json.Key(key);
    json.Uint64(value);
}

} // namespace consolidator::inspect
