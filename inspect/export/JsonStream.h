// What RapidJSON writes to: blocks of characters on their way to a standard stream.
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
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

} // namespace consolidator::inspect
