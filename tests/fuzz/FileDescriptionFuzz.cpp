/// Any bytes as a file description: decoded or refused, always alike, and nothing decodes that is no whole
/// document.

#include "model/FileDownloadInfo.h"
#include "platform/Error.h"
#include "platform/Utf8.h"
#include "tests/fuzz/Finding.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

namespace orvane::fuzz {
namespace {

struct Outcome {
    std::optional<FileDownloadInfo> info;
    std::string refusal;

    bool operator==(const Outcome&) const = default;
};

Outcome outcomeOf(std::string_view document) {
    try {
        return {.info = decodeFileDownloadInfo(bytesOf(document)), .refusal = ""};
    } catch (const platform::Error& error) {
        return {.info = std::nullopt, .refusal = error.localizedDescription()};
    }
}

bool isRefused(std::string_view document) { return !outcomeOf(document).info; }

std::string writtenOut(const FileDownloadInfo& info) {
    return nlohmann::json{{"URL", info.URL},
                          {"Checksum", info.Checksum},
                          {"ChecksumAlgorithm", info.ChecksumAlgorithm},
                          {"EncryptedFileChecksum", info.EncryptedFileChecksum},
                          {"EncryptionAlgorithm", info.EncryptionAlgorithm},
                          {"Size", info.Size},
                          {"Version", info.Version}}
        .dump();
}

void checkRefused(std::string_view document, const std::string& refusal) {
    expect(!refusal.empty(), "a refusal says why");
    if (isValidUtf8(document)) {
        expect(isValidUtf8(refusal), "the log stays readable");
    }
}

void checkDecoded(std::string_view document, const Outcome& outcome) {
    const FileDownloadInfo& info = *outcome.info;
    expect(isValidUtf8(document), "only UTF-8 decodes");
    for (const std::string& text : {info.URL, info.Checksum, info.ChecksumAlgorithm,
                                    info.EncryptedFileChecksum, info.EncryptionAlgorithm, info.Version}) {
        expect(isValidUtf8(text), "each text is UTF-8");
    }
    expect(outcomeOf(writtenOut(info)) == outcome, "a description written out decodes to itself");

    const std::size_t last = document.find_last_not_of(" \t\r\n");
    expect(last != std::string_view::npos && document[last] == '}', "a document ends with its object");
    const std::string whole(document.substr(0, last + 1));
    expect(outcomeOf(whole + " \t\r\n") == outcome, "blanks may follow");
    expect(isRefused(whole.substr(0, last)), "a cut document is refused");
    for (const char follower : {'}', '{', ',', '0', 'x', '"', '\0', '\f'}) {
        expect(isRefused(whole + follower), "nothing but blanks may follow");
        expect(isRefused(whole + follower + whole), "nothing but blanks may follow");
    }
    std::string longer = whole;
    longer.insert(last, R"(, "Size ": [{}], "uRL": 1e-3, "x": 1e999)");
    expect(outcomeOf(longer) == outcome, "other keys are ignored");
}

/// A JSON library agrees whether the document is JSON, and on each value. It takes a NUL for the document's
/// end and refuses numbers beyond a double, so such documents are left out.
void checkAgainstLibrary(std::string_view document, const Outcome& outcome) {
    if (document.find('\0') != std::string_view::npos) {
        return;
    }
    try {
        const auto json = nlohmann::json::parse(document);
        expect(!outcome.refusal.starts_with("The document is not valid JSON"), "what is JSON is read");
        expect(json.is_object() || !outcome.info, "only an object decodes");
        expect(!outcome.info || json.at("URL") == outcome.info->URL, "the library reads the same texts");
        expect(!outcome.info || json.at("Version") == outcome.info->Version,
               "the library reads the same texts");
        expect(!outcome.info || json.at("Size") == outcome.info->Size, "the library reads the same number");
    } catch (const nlohmann::json::parse_error&) {
        expect(outcome.refusal.starts_with("The document is not valid JSON"), "what is no JSON is refused");
    } catch (const nlohmann::json::out_of_range&) {
        return;
    }
}

void check(std::string_view document) {
    const Outcome outcome = outcomeOf(document);
    checkAgainstLibrary(document, outcome);
    expect(outcomeOf(document) == outcome, "the same document has the same outcome");
    if (outcome.info) {
        checkDecoded(document, outcome);
    } else {
        checkRefused(document, outcome.refusal);
    }
}

} // namespace
} // namespace orvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    orvane::fuzz::check(orvane::fuzz::textOf(data, size));
    return 0;
}
