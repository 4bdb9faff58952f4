// Texts of the daemon may hold any bytes; terminals and JSON take UTF-8 only.
#pragma once

#include <cstring>
#include <string>

#include "output.h"

namespace aaactl {

/// The text of a field that a full one leaves without a terminator.
template <size_t N>
std::string FieldText(const char (&field)[N]) {
    return std::string(field, strnlen(field, N));
}

/// For terminals: control characters and bytes that are no UTF-8 as \xNN.
std::string Printable(const std::string& text);

/// For JSON, without loss: a byte B that is no UTF-8 becomes the character U+F700 + B. Bytes of
/// a text that holds such a character (U+F780 to U+F7FF) itself count as no UTF-8.
std::string ToJsonText(const std::string& bytes);
/// The bytes that ToJsonText has made a text of.
std::string FromJsonText(const std::string& text);

/// The same for every text in a document, names of members included.
Json ToJsonTexts(const Json& document);
Json FromJsonTexts(const Json& document);

}  // namespace aaactl
