#include "query/NamePattern.h"

#include "query/KernelView.h"
#include "shared/Printable.h"
#include "shared/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <re2/re2.h>

namespace consolidator {

namespace {

// RE2 knows characters of UTF-8 only. A byte that belongs to none becomes one of these, which UTF-8
// has no room for: surrogates, which RE2 takes as it takes all others.
constexpr std::uint32_t strayBytes = 0xD800;
constexpr std::uint32_t firstSurrogate = 0xD800;
constexpr std::uint32_t lastSurrogate = 0xDFFF;

constexpr std::uint32_t firstContinuation = 0x80;

/// RE2 gives up an expression that would take more memory. What a byte of a pattern makes of it at
/// most is a "?", with a step for each byte of the kinds of characters that there are.
constexpr std::int64_t memoryPerByte = 2048;

std::uint32_t firstByte(std::string_view text) {
    return static_cast<std::uint8_t>(text.front());
}

/// The text with each byte that belongs to no character as a surrogate, in the form of UTF-8.
std::string withSurrogates(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0) {
            const std::uint32_t codePoint = strayBytes + firstByte(text);
            result += static_cast<char>(0xE0 | codePoint >> 12);
            result += static_cast<char>(0x80 | (codePoint >> 6 & 0x3F));
            result += static_cast<char>(0x80 | (codePoint & 0x3F));
        }
        result += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

/// A character of a pattern: one of UTF-8, or a byte that belongs to none.
class Character {
public:
    explicit Character(std::string_view bytes)
        : first_(firstByte(bytes)), length_(utf8Length(bytes)), codePoint_(first_) {
        if (length_ > 1) {
            codePoint_ = first_ & (0x7FU >> length_);
            for (std::size_t i = 1; i < length_; ++i) {
                codePoint_ = codePoint_ << 6 | (static_cast<std::uint8_t>(bytes[i]) & 0x3FU);
            }
        }
    }

    bool isStray() const { return length_ == 0; }

    // Where it stands in the order of bytes, among the characters of UTF-8 and among stray bytes:
    // the first of each that are not before it, and the last that are not behind.
    std::uint32_t firstCharacter() const { return isStray() ? lowestFrom(first_) : codePoint_; }
    std::uint32_t lastCharacter() const { return isStray() ? lowestFrom(first_) - 1 : codePoint_; }
    std::uint32_t firstStray() const {
        return isStray() ? first_ : std::max(first_ + 1, firstContinuation);
    }
    std::uint32_t lastStray() const { return first_; }

private:
    /// The first character that has this byte, which is none of ASCII, or a later one in front.
    static std::uint32_t lowestFrom(std::uint32_t byte) {
        if (byte < 0xE0) {
            return byte <= 0xC2 ? 0x80 : (byte & 0x1F) << 6;
        }
        if (byte < 0xF0) {
            return byte == 0xE0 ? 0x800 : (byte & 0xF) << 12;
        }
        return byte == 0xF0 ? 0x10000 : std::min((byte & 0xF) << 18, 0x110000U);
    }

    std::uint32_t first_;
    std::size_t length_; ///< 0 of a stray byte.
    std::uint32_t codePoint_;
};

/// One character as RE2 writes it, whether or not it means something.
std::string escaped(std::uint32_t codePoint) {
    std::array<char, 8> digits{};
    char* const end =
        std::to_chars(digits.data(), digits.data() + digits.size(), codePoint, 16).ptr;
    return "\\x{" + std::string(digits.data(), end) + '}';
}

/// Makes the expression.
class Translation {
public:
    explicit Translation(std::string_view glob) : rest_(glob) {
        while (!rest_.empty() && error_.empty()) {
            takePiece();
        }
    }

    const std::string& expression() const { return expression_; }

    /// The first error; empty if there is none.
    const std::string& error() const { return error_; }

private:
    void takePiece();
    void takeSet();
    Character takeCharacter();
    void addRange(Character from, Character to);
    void addRange(std::uint32_t first, std::uint32_t last);
    void setError(std::string_view error);

    std::string_view rest_;
    std::string expression_;
    std::string ranges_; ///< Of the set that is being taken.
    std::string error_;
};

void Translation::setError(std::string_view error) {
    if (error_.empty()) {
        error_ = error;
    }
}

void Translation::takePiece() {
    switch (rest_.front()) {
    case '*':
        rest_.remove_prefix(1);
        expression_ += ".*";
        return;
    case '?':
        rest_.remove_prefix(1);
        expression_ += '.';
        return;
    case '[':
        rest_.remove_prefix(1);
        takeSet();
        return;
    default:
        const Character character = takeCharacter();
        expression_ += escaped(character.isStray() ? strayBytes + character.firstStray()
                                                   : character.firstCharacter());
    }
}

/// One character off the front of the rest, which is not empty; behind a backslash the next one.
Character Translation::takeCharacter() {
    if (rest_.starts_with('\\')) {
        rest_.remove_prefix(1);
        if (rest_.empty()) {
            setError("nothing follows its last \"\\\"");
            return Character("\\");
        }
    }
    const std::string_view bytes = rest_.substr(0, std::max<std::size_t>(utf8Length(rest_), 1));
    rest_.remove_prefix(bytes.size());
    return Character(bytes);
}

/// What stands between brackets, of which the first is already gone.
void Translation::takeSet() {
    const bool isNegated = rest_.starts_with('!') || rest_.starts_with('^');
    rest_.remove_prefix(isNegated ? 1 : 0);
    ranges_.clear();
    // A bracket that closes at once stands for itself.
    for (bool isFirst = true; !rest_.empty() && (rest_.front() != ']' || isFirst);
         isFirst = false) {
        if (rest_.starts_with("[:")) {
            setError("classes of characters as \"[:digit:]\" are not known");
        }
        const Character from = takeCharacter();
        if (rest_.size() > 1 && rest_.front() == '-' && rest_[1] != ']') {
            rest_.remove_prefix(1);
            addRange(from, takeCharacter());
        } else {
            addRange(from, from);
        }
    }
    if (rest_.empty()) {
        setError("its \"[\" has no \"]\" (write \"\\[\" for the character itself)");
        return;
    }
    rest_.remove_prefix(1);
    if (!ranges_.empty()) {
        expression_ += (isNegated ? "[^" : "[") + ranges_ + ']';
    } else { // ranges as "z-a" have no character
        expression_ += isNegated ? "." : "[^\\x{0}-\\x{10ffff}]";
    }
}

/// Surrogates are the stray bytes' own, and in no range of characters.
void Translation::addRange(Character from, Character to) {
    addRange(from.firstCharacter(), std::min(to.lastCharacter(), firstSurrogate - 1));
    addRange(std::max(from.firstCharacter(), lastSurrogate + 1), to.lastCharacter());
    addRange(strayBytes + from.firstStray(), strayBytes + to.lastStray());
}

void Translation::addRange(std::uint32_t first, std::uint32_t last) {
    if (first <= last) {
        ranges_ += escaped(first) + '-' + escaped(last);
    }
}

std::unique_ptr<const re2::RE2> compiled(const std::string& expression) {
    re2::RE2::Options options;
    options.set_log_errors(false);
    options.set_dot_nl(true); // a name may hold a newline, and is one text all the same
    return std::make_unique<const re2::RE2>(expression, options);
}

} // namespace

/// A pattern that whole texts match or not: a regular expression of RE2 is made of it.
class NamePattern::Glob {
public:
    explicit Glob(std::string_view pattern);

    /// Why the pattern cannot be understood; empty if it can. Then no text matches.
    const std::string& error() const { return error_; }

    bool matches(std::string_view text) const;

private:
    std::string error_;
    std::unique_ptr<const re2::RE2> expression_; ///< Null if there is an error.
};

NamePattern::Glob::Glob(std::string_view pattern) {
    const Translation translation(pattern);
    error_ = translation.error();
    if (!error_.empty()) {
        return;
    }
    re2::RE2::Options options;
    options.set_log_errors(false);
    options.set_dot_nl(true);
    options.set_never_capture(true);
    options.set_max_mem(options.max_mem() +
                        memoryPerByte * static_cast<std::int64_t>(pattern.size()));
    expression_ = std::make_unique<const re2::RE2>(translation.expression(), options);
    if (!expression_->ok()) {
        error_ = "it is too long";
        expression_.reset();
    }
}

bool NamePattern::Glob::matches(std::string_view text) const {
    if (!expression_) {
        return false;
    }
    const auto isMatch = [this](std::string_view characters) {
        return re2::RE2::FullMatch(re2::StringPiece(characters.data(), characters.size()),
                                   *expression_);
    };
    return isUtf8(text) ? isMatch(text) : isMatch(withSurrogates(text));
}

NamePattern::NamePattern(const std::string& pattern, Kind kind)
    : hasSlash_(pattern.find('/') != std::string::npos),
      glob_(kind == Kind::Glob ? std::make_unique<const Glob>(pattern) : nullptr),
      regex_(kind == Kind::Regex ? compiled(pattern) : nullptr) {}

NamePattern::~NamePattern() = default;

std::string NamePattern::error() const {
    // RE2 quotes the expression.
    return glob_ ? glob_->error() : printable(regex_->error());
}

bool NamePattern::matchesName(std::string_view name) const {
    if (glob_) {
        return glob_->matches(name);
    }
    return re2::RE2::PartialMatch(re2::StringPiece(name.data(), name.size()), *regex_);
}

bool NamePattern::matchesNet(std::string_view net) const {
    if (matchesName(net)) {
        return true;
    }
    if (!glob_) {
        return false;
    }
    return (net.starts_with('/') && matchesName(net.substr(1))) ||
           (!hasSlash_ && matchesName(lastComponent(net)));
}

} // namespace consolidator
