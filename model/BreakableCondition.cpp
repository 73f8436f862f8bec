#include "model/BreakableCondition.h"

#include "model/BinaryForm.h"
#include "model/JsonText.h"
#include "shared/KeyedHash.h"

#include <tuple>

namespace consolidator {

BreakableCondition::BreakableCondition(std::uint32_t conditionKind, std::string_view conditionText)
    : kind(conditionKind), condition(conditionText), valid(true) {}

BreakableCondition::BreakableCondition(std::FILE* stream) {
    valid = stream != nullptr && readFields(stream);
}

bool BreakableCondition::readFields(std::FILE* stream) {
    if (!readNumber(stream, kind) || !readText(stream, condition)) {
        return false;
    }
    return kind != FileLine || (readNumber(stream, line) && readText(stream, file));
}

bool BreakableCondition::skip(std::FILE* stream) {
    std::uint32_t kind = Start;
    std::uint32_t line = 0;
    return readNumber(stream, kind) && skipText(stream) &&
           (kind != FileLine || (readNumber(stream, line) && skipText(stream)));
}

bool BreakableCondition::operator==(const BreakableCondition& other) const {
    return std::tie(kind, line, condition, file) ==
           std::tie(other.kind, other.line, other.condition, other.file);
}

void BreakableCondition::writeJson(std::ostream& out) const {
    JsonBlock json(out);
    json.add("{ ");
    switch (kind) {
    case Start:
        json.add("\"Start\":true, ");
        break;
    case Stop:
        json.add("\"Stop\":true, ");
        break;
    case FileLine:
        json.add("\"File\":").addQuoted(file).add(", \"Line\":").add(line).add(", ");
        break;
    default:
        json.add("\"Error\":1, ");
        break;
    }
    json.add("\"Cond\":").addQuoted(condition).add("}");
}

std::uint32_t BreakableCondition::write(std::FILE* stream) const {
    if (stream == nullptr) {
        return 0;
    }
    std::uint32_t written = writeNumber(stream, kind);
    written += writeText(stream, condition);
    if (kind == FileLine) {
        written += writeNumber(stream, line);
        written += writeText(stream, file);
    }
    return written;
}

std::uint64_t keyHash(const BreakableCondition& condition) {
    return KeyedHash()
        .add(condition.kind)
        .add(condition.condition)
        .add(condition.line)
        .add(condition.file)
        .value();
}

} // namespace consolidator
