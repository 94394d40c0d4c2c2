#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

/// A member's value as it is written in the document.
struct JsonValue {
    enum class Kind {
        text,   ///< `written` is what the quotes enclose, escapes included
        number, ///< `written` is the whole number, of any length
        other   ///< an object, an array, true, false or null
    };
    Kind kind = Kind::other;
    std::string_view written = {};
};

/// Called with each member of the outermost object, in the document's order; a key may come twice. The key is
/// what its quotes enclose, escapes included.
using JsonMemberHandler = std::function<void(std::string_view writtenKey, const JsonValue& value)>;

struct JsonOutcome {
    std::optional<std::size_t> errorPosition; ///< index of the byte at which the document is no JSON
    bool isObject = false;                    ///< rather than another JSON value
};

/// Reads a whole document (RFC 8259), which must be valid UTF-8; a byte order mark is skipped.
///
/// Nested values are checked and skipped, whatever their size, depth and numbers: time is linear, and memory
/// one bit for each level of nesting. The views given to the handler point into `document`.
JsonOutcome readJsonMembers(std::string_view document, const JsonMemberHandler& handler);

/// The text that a valid `written` stands for: its escapes resolved.
std::string jsonText(std::string_view written);

} // namespace orvane
