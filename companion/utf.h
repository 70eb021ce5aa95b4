#pragma once
// Text between the segment's UTF-16 fields and the console's UTF-8. Everything here is bounded by its field.
#include "platform/types.h"
#include <string>
#include <string_view>

namespace companion {

/// UTF-8 of at most uUnits units, ending at the first zero unit. An unpaired surrogate becomes U+FFFD.
std::string Utf8FromUnits(const char16_t* pwzText, size_t uUnits);

/// UTF-16 of strText into wzOut. False if strText is not valid UTF-8.
bool UnitsFromUtf8(std::string_view strText, std::u16string& wzOut);

/// strText made safe for a terminal: control characters become \xNN or \uNNNN, broken UTF-8 becomes U+FFFD.
std::string Printable(std::string_view strText);

/// Printable for finished JSON text, whose meaning stays: what JSON itself leaves as it is becomes \uNNNN.
std::string PrintableJson(std::string_view strJson);

} // namespace companion
