#include "model/FileDownloadInfo.h"

#include "model/JsonMembers.h"
#include "platform/Error.h"
#include "platform/Utf8.h"

#include <charconv>
#include <map>
#include <string_view>

namespace orvane {

namespace {

[[noreturn]] void refuse(const std::string& why) {
    throw platform::Error("OrvaneBootstrap.FileDownloadInfo", 1, why);
}

[[noreturn]] void refuseAt(const std::string& what, std::size_t position) {
    refuse("The document is not valid JSON: " + what + " at byte " + std::to_string(position + 1));
}

/// The values of the description's own keys, as the document holds them. Of two under one key the last
/// counts.
class Members {
public:
    explicit Members(std::string_view document) {
        const JsonOutcome outcome = readJsonMembers(
            document, [this](std::string_view key, const JsonValue& value) { keep(key, value); });
        if (outcome.errorPosition) {
            refuseAt("a syntax error", *outcome.errorPosition);
        }
        if (!outcome.isObject) {
            refuse("The document is not a JSON object");
        }
    }

    std::string text(std::string_view key) const {
        const JsonValue& value = required(key);
        if (value.kind != JsonValue::Kind::text) {
            refuse("The value of " + std::string(key) + " is not a text");
        }
        return jsonText(value.written);
    }

    std::int64_t wholeNumber(std::string_view key) const {
        const JsonValue& value = required(key);
        const char* const end = value.written.data() + value.written.size();
        std::int64_t number = 0;
        const auto [rest, failure] = std::from_chars(value.written.data(), end, number);
        if (value.kind != JsonValue::Kind::number || failure != std::errc() || rest != end) {
            refuse("The value of " + std::string(key) + " is not a whole number of 64 bits");
        }
        return number;
    }

private:
    void keep(std::string_view writtenKey, const JsonValue& value) {
        constexpr std::size_t kLongestKey = std::string_view("EncryptedFileChecksum").size();
        constexpr std::size_t kLongestEscape = std::string_view("\\u0000").size();
        if (writtenKey.size() > kLongestKey * kLongestEscape) {
            return;
        }
        if (const auto found = values_.find(jsonText(writtenKey)); found != values_.end()) {
            found->second = value;
        }
    }

    const JsonValue& required(std::string_view key) const {
        const auto& value = values_.find(key)->second;
        if (!value) {
            refuse("The key " + std::string(key) + " is missing");
        }
        return *value;
    }

    std::map<std::string, std::optional<JsonValue>, std::less<>> values_{{"URL", {}},
                                                                         {"Checksum", {}},
                                                                         {"ChecksumAlgorithm", {}},
                                                                         {"EncryptedFileChecksum", {}},
                                                                         {"EncryptionAlgorithm", {}},
                                                                         {"Size", {}},
                                                                         {"Version", {}}};
};

} // namespace

/// A refusal quotes nothing of the document: a quotation could cut a character in two.
FileDownloadInfo decodeFileDownloadInfo(ByteView document) {
    const std::string_view text = textOf(document);
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) {
        refuseAt("a NUL", nul);
    }
    if (const std::size_t valid = validUtf8Length(text); valid != text.size()) {
        refuseAt("no UTF-8", valid);
    }
    const Members members(text);
    return {
        .URL = members.text("URL"),
        .Checksum = members.text("Checksum"),
        .ChecksumAlgorithm = members.text("ChecksumAlgorithm"),
        .EncryptedFileChecksum = members.text("EncryptedFileChecksum"),
        .EncryptionAlgorithm = members.text("EncryptionAlgorithm"),
        .Size = members.wholeNumber("Size"),
        .Version = members.text("Version"),
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
