#pragma once

#include <string>
#include <string_view>

namespace orvane::tools {

/// Text from outside as it can be shown: what could steer a terminal or disturb the order of characters on a
/// page becomes visible, such as `\x1b` or `\u{202e}`. Line feeds and tabulators stay; a carriage return
/// before a line feed is left out. Bytes that are not UTF-8 become `\xNN`.
std::string printable(std::string_view text);

/// `printable` on one line: line feeds become `\x0a`.
std::string printableLine(std::string_view text);

/// `text` as the content of an HTML element or of a quoted attribute.
std::string htmlEscaped(std::string_view text);

} // namespace orvane::tools
