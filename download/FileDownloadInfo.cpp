#include "download/FileDownloadInfo.h"

#include "platform/Error.h"

#include <limits>

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

Json parsed(ByteView document) {
    try {
        return Json::parse(textOf(document));
    } catch (const Json::exception& error) {
        refuse(std::string("The document is not valid JSON: ") + error.what());
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
