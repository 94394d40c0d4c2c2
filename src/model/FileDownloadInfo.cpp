#include "model/FileDownloadInfo.h"

#include "platform/Error.h"

#include <limits>
#include <string_view>

#include <nlohmann/json.hpp>

namespace orvane {

namespace {

using Json = nlohmann::json;

[[noreturn]] void refuse(const std::string& why) {
    throw platform::Error("OrvaneBootstrap.FileDownloadInfo", 1, why);
}

const Json& requiredValue(const Json& document, const char* key) {
    const auto found = document.find(key);
    if (found == document.end()) {
        refuse(std::string("The key ") + key + " is missing");
    }
    return *found;
}

std::string requiredText(const Json& document, const char* key) {
    const Json& value = requiredValue(document, key);
    if (!value.is_string()) {
        refuse(std::string("The value of ") + key + " is not a text");
    }
    return value.get<std::string>();
}

/// The parser reads a whole number as unsigned where it can, as signed where it is negative, and as floating
/// point where it has a fraction or an exponent or fits neither.
std::int64_t requiredWholeNumber(const Json& document, const char* key) {
    const Json& value = requiredValue(document, key);
    const bool tooLarge =
        value.is_number_unsigned() &&
        value.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()};
    if (!value.is_number_integer() || tooLarge) {
        refuse(std::string("The value of ") + key + " is not a whole number of 64 bits");
    }
    return value.get<std::int64_t>();
}

/// A refusal says where, and leaves out the parser's own words: they quote the document, and may cut a
/// character in two.
Json parsed(ByteView document) {
    const std::string what = "The document is not valid JSON: ";
    const std::string_view text = textOf(document);
    // The parser would take a NUL for the end of the document and let anything follow it.
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) {
        refuse(what + "a NUL at byte " + std::to_string(nul + 1));
    }
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        refuse(what + "a syntax error at byte " + std::to_string(error.byte));
    } catch (const Json::exception&) { // of which parsing throws no other
        refuse(what + "a number out of range");
    }
}

} // namespace

FileDownloadInfo decodeFileDownloadInfo(ByteView document) {
    const Json json = parsed(document);
    if (!json.is_object()) {
        refuse("The document is not a JSON object");
    }
    return {
        .URL = requiredText(json, "URL"),
        .Checksum = requiredText(json, "Checksum"),
        .ChecksumAlgorithm = requiredText(json, "ChecksumAlgorithm"),
        .EncryptedFileChecksum = requiredText(json, "EncryptedFileChecksum"),
        .EncryptionAlgorithm = requiredText(json, "EncryptionAlgorithm"),
        .Size = requiredWholeNumber(json, "Size"),
        .Version = requiredText(json, "Version"),
    };
}

std::string encryptedFileSuffix(const std::string& encryptionAlgorithm) {
    if (encryptionAlgorithm == "xor") {
        return ".enc";
    }
    if (encryptionAlgorithm == "pkg") {
        return ".pkg";
    }
    return ".";
}

} // namespace orvane
