#include "query/integrity/KernelDataCheck.h"

#include "shared/Numbers.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

namespace consolidator {

namespace {

constexpr std::uint64_t numberSize = 4;
constexpr std::uint64_t locationSize = 8;

constexpr std::uint32_t lastKernelType = 4;
constexpr std::uint32_t fileLineKind = 2;

/// Logic-location files that name higher bits do not get them into a database.
constexpr std::uint32_t mostBits = std::uint32_t{1} << 24U;

/// A hash as a part of another one.
std::string_view asPiece(const std::uint64_t& hash) {
    return {reinterpret_cast<const char*>(&hash), sizeof hash};
}

} // namespace

// What stands more than once in a list that is too long to be kept

/// The keys of one list's elements, by their hashes (see KeyedHash.h), and where they stand: 16
/// bytes for each element.
class KernelDataCheck::Repeats {
public:
    /// A key that more than one element has.
    struct Repeat {
        std::uint64_t first = 0;  ///< The offset of the first element that has it …
        std::uint64_t second = 0; ///< … and of the next one.
        std::size_t count = 0;    ///< How many have it in all.
    };

    /// Elements come in the order of their offsets.
    void add(std::uint64_t keyHash, std::uint64_t offset) {
        elements_.push_back({keyHash, offset});
    }

    /// The keys that were added more than once, by their second offsets. Forgets all elements.
    std::vector<Repeat> take();

private:
    struct Element {
        std::uint64_t keyHash;
        std::uint64_t offset;
    };

    std::vector<Element> elements_;
};

std::vector<KernelDataCheck::Repeats::Repeat> KernelDataCheck::Repeats::take() {
    std::ranges::sort(elements_, [](const Element& left, const Element& right) {
        return std::tie(left.keyHash, left.offset) < std::tie(right.keyHash, right.offset);
    });
    std::vector<Repeat> repeats;
    for (std::size_t begin = 0; begin < elements_.size();) {
        std::size_t end = begin + 1;
        while (end < elements_.size() && elements_[end].keyHash == elements_[begin].keyHash) {
            ++end;
        }
        if (end - begin > 1) {
            repeats.push_back({elements_[begin].offset, elements_[begin + 1].offset, end - begin});
        }
        begin = end;
    }
    elements_.clear();
    std::ranges::sort(repeats, {}, &Repeat::second);
    return repeats;
}

KernelDataCheck::KernelDataCheck(const FileBytes& file, std::uint64_t begin, std::uint64_t end,
                                 std::string section, DatabaseFindings& findings)
    : file_(&file),
      bytes_(file, begin, end),
      end_(end),
      section_(std::move(section)),
      findings_(&findings) {}

bool KernelDataCheck::check() {
    if (!checkList({.element = "kernel", .countName = "number of kernels"},
                   [this] { return checkKernel(); })) {
        return false;
    }
    if (bytes_.left() > 0) {
        add(Severity::Warning, bytes_.position(), [this] {
            return inWords(bytes_.left(), "byte") + " without a record behind the last one";
        });
    }
    return true;
}

KernelDataCheck::Key KernelDataCheck::checkKernel() {
    const std::optional<StoredText> name = text("name");
    if (!name) {
        return std::nullopt;
    }
    levels_.back().name = name;
    const auto checkAnyText = [this] { return checkText(); };
    const auto checkAnyVariable = [this] { return checkVariable(); };
    const bool isWhole =
        checkList({.element = "instance path", .countName = "number of instance paths"},
                  checkAnyText) &&
        checkType() &&
        checkList({.element = "argument", .countName = "number of arguments"}, checkAnyVariable) &&
        checkList({.element = "variable", .countName = "number of variables"}, checkAnyVariable) &&
        checkList({.element = "register", .countName = "number of registers"},
                  [this] { return checkRegister(); }) &&
        checkList(
            {.element = "condition", .countName = "number of conditions", .textBegin = numberSize},
            [this] { return checkCondition(); }) &&
        checkList({.element = "BRAM name", .countName = "number of BRAM names", .isUnique = false},
                  checkAnyText);
    if (!isWhole) {
        return std::nullopt;
    }
    ++kernels_;
    return name->hash();
}

bool KernelDataCheck::checkType() {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> type = number("type");
    if (type && *type > lastKernelType) {
        add(Severity::Warning, start, [&] {
            return "type " + std::to_string(*type) +
                   " is no type of a kernel, and shown as Unknown";
        });
    }
    return type.has_value();
}

KernelDataCheck::Key KernelDataCheck::checkText() {
    const std::optional<StoredText> element = text("text");
    return element ? Key(element->hash()) : std::nullopt;
}

KernelDataCheck::Key KernelDataCheck::checkVariable() {
    const std::optional<StoredText> sourceName = text("source name");
    const List instances{
        .element = "instance", .countName = "number of instances", .isUnique = false};
    const auto checkInstance = [this] {
        std::uint32_t count = 0;
        return checkLocations("number of locations", count) ? Key(0) : std::nullopt;
    };
    const bool isWhole =
        sourceName && text("hardware name") && text("type") && checkList(instances, checkInstance);
    return isWhole ? Key(sourceName->hash()) : std::nullopt;
}

KernelDataCheck::Key KernelDataCheck::checkRegister() {
    const std::optional<StoredText> net = text("net");
    const std::uint64_t start = bytes_.position();
    std::uint32_t bits = 0;
    if (!net || !checkLocations("number of bits", bits)) {
        return std::nullopt;
    }
    if (bits == 0) {
        add(Severity::Note, start, [&net] { return net->quoted() + " has no bits"; });
    }
    if (bits > mostBits) {
        add(Severity::Warning, start, [&] {
            return net->quoted() + " has " + std::to_string(bits) +
                   " bits, and no run makes more than " + std::to_string(mostBits);
        });
    }
    return net->hash();
}

KernelDataCheck::Key KernelDataCheck::checkCondition() {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> kind = number("kind");
    const std::optional<StoredText> condition = kind ? text("condition") : std::nullopt;
    if (!condition) {
        return std::nullopt;
    }
    KeyedHash key;
    key.add(*kind).add(asPiece(condition->hash()));
    if (*kind == fileLineKind) {
        const std::optional<std::uint32_t> line = number("line");
        const std::optional<StoredText> file = line ? text("file") : std::nullopt;
        if (!file) {
            return std::nullopt;
        }
        key.add(*line).add(asPiece(file->hash()));
    }
    if (*kind > fileLineKind) {
        add(Severity::Warning, start,
            [&kind] { return "kind " + std::to_string(*kind) + " is no kind of a condition"; });
    }
    return key.value();
}

/// A number of locations, and the locations.
bool KernelDataCheck::checkLocations(std::string_view what, std::uint32_t& count) {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> claimed = number(what);
    if (!claimed) {
        return false;
    }
    if (*claimed > bytes_.left() / locationSize) {
        reportTooMany(start, what, *claimed);
        return false;
    }
    count = *claimed;
    bytes_.skip(count * locationSize);
    return true;
}

/// A count, and then each element by checkOne(), which returns its Key.
template <typename CheckOne>
bool KernelDataCheck::checkList(const List& list, CheckOne checkOne) {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> count = number(list.countName);
    if (!count) {
        return false;
    }
    if (*count > bytes_.left() / numberSize) { // with which each element begins at least
        reportTooMany(start, list.countName, *count);
        return false;
    }
    Repeats repeats;
    levels_.push_back({.element = list.element, .count = *count});
    for (std::uint32_t i = 0; i < *count; ++i) {
        levels_.back().number = i + 1;
        levels_.back().name.reset();
        const std::uint64_t begin = bytes_.position();
        const Key key = checkOne();
        if (!key) {
            return false;
        }
        if (list.isUnique) {
            repeats.add(*key, begin);
        }
    }
    levels_.pop_back();
    reportRepeats(list, repeats);
    return true;
}

void KernelDataCheck::reportTooMany(std::uint64_t offset, std::string_view what,
                                    std::uint32_t count) {
    add(Severity::Error, offset, [&] {
        return "the " + std::string(what) + " is " + std::to_string(count) + ", with " +
               inWords(bytes_.left(), "byte") + " left";
    });
}

void KernelDataCheck::reportRepeats(const List& list, Repeats& repeats) {
    for (const Repeats::Repeat& repeat : repeats.take()) {
        add(Severity::Warning, repeat.second, [&] {
            ByteRange again(*file_, repeat.second + list.textBegin, end_);
            const std::uint64_t length = again.number().value_or(0);
            const StoredText element(again, std::min(length, again.left()));
            std::string text = "the " + std::string(list.element) + " " + element.quoted() +
                               " stands here again, first at " + inHex(repeat.first);
            if (repeat.count > 2) {
                text += ", and " + std::to_string(repeat.count) + " times in all";
            }
            return text;
        });
    }
}

std::optional<std::uint32_t> KernelDataCheck::number(std::string_view what) {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> result = bytes_.number();
    if (!result) {
        add(Severity::Error, start,
            [&] { return "the section ends before the " + std::string(what); });
    }
    return result;
}

std::optional<StoredText> KernelDataCheck::text(std::string_view what) {
    const std::uint64_t start = bytes_.position();
    const std::optional<std::uint32_t> length = number(what);
    if (!length) {
        return std::nullopt;
    }
    if (*length > bytes_.left()) {
        add(Severity::Error, start, [&] {
            return "the " + std::string(what) + " has a length of " + std::to_string(*length) +
                   ", with " + inWords(bytes_.left(), "byte") + " left";
        });
        return std::nullopt;
    }
    StoredText result(bytes_, *length);
    if (result.hasZero()) {
        hasZeroBytes_ = true;
        add(Severity::Warning, start, [&] {
            return "the " + std::string(what) + " has a zero byte, and is read as " +
                   result.quoted();
        });
    }
    return result;
}

template <typename Text>
void KernelDataCheck::add(Severity severity, std::uint64_t offset, Text makeText) {
    findings_->add(severity, offset, [&] { return here() + ": " + makeText(); });
}

/// Where the check is: "section 3 (kernel data), kernel 1 of 2 ("scale"), argument 3 of 4".
std::string KernelDataCheck::here() const {
    std::string result = section_;
    for (const Level& level : levels_) {
        result += ", " + std::string(level.element) + " " + std::to_string(level.number) + " of " +
                  std::to_string(level.count);
        if (level.name) {
            result += " (" + level.name->quoted() + ")";
        }
    }
    return result;
}

} // namespace consolidator
