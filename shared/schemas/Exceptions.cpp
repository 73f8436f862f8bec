#include "shared/schemas/Exceptions.h"

namespace lmx60 {

std::string_view get_error_description(ErrorCode code) { // NOLINT(readability-identifier-naming)
    switch (code) {
    case ErrorCode::None:
        return "no error";
    case ErrorCode::CannotOpen:
        return "cannot be opened";
    case ErrorCode::CannotRead:
        return "cannot be read";
    case ErrorCode::NotWellFormed:
        return "not well-formed";
    case ErrorCode::UnexpectedRoot:
        return "unexpected root element";
    case ErrorCode::InvalidValue:
        return "invalid value";
    case ErrorCode::UnsafeDocument:
        return "unsafe document";
    case ErrorCode::TooLarge:
        return "too large";
    }
    return "unknown error";
}

namespace {

std::string placeAndReason(ErrorCode code, const std::string& documentName, std::uint64_t line,
                           std::uint64_t column, const std::string& reason) {
    std::string text = documentName;
    text += ':';
    text += std::to_string(line);
    text += ':';
    text += std::to_string(column);
    text += ": ";
    text += get_error_description(code);
    text += ": ";
    text += reason;
    return text;
}

} // namespace

c_lmx_reader_exception::c_lmx_reader_exception(ErrorCode code, const std::string& documentName,
                                               std::uint64_t line, std::uint64_t column,
                                               const std::string& reason)
    : c_lmx_exception(code, placeAndReason(code, documentName, line, column, reason)),
      line_(line),
      column_(column),
      reason_(reason) {}

} // namespace lmx60
