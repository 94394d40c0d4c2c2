#include "tools/Publisher.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/PublishError.h"
#include "verify/Crypto.h"

#include <nlohmann/json.hpp>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// A file that appears under its name only when it is committed, and leaves nothing behind otherwise.
class StagedFile {
public:
    StagedFile(const fs::path& folder, const std::string& name)
        : target_(folder / name), staged_(folder / ("." + name + ".partial")) {
        discard();
    }
    ~StagedFile() { discard(); }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    const fs::path& path() const { return staged_; }
    const fs::path& target() const { return target_; }

    void write(ByteView contents) const { platform::writeNewFile(staged_, contents); }
    void commit() const { fs::rename(staged_, target_); }

private:
    void discard() const {
        std::error_code ignored;
        fs::remove(staged_, ignored);
    }

    fs::path target_;
    fs::path staged_;
};

Bytes contentsOf(const fs::path& file) {
    Bytes contents;
    try {
        contents = platform::FileHandle::forReading(file).readToEnd();
    } catch (const platform::Error& error) {
        throw PublishError(PublishStatus::noInput, error.localizedDescription());
    }
    if (contents.empty()) {
        throw PublishError(PublishStatus::badData, file.string() + " is empty");
    }
    return contents;
}

std::string descriptionWordOf(Cipher cipher) {
    switch (cipher) {
    case Cipher::none:
        return "";
    case Cipher::exclusiveOr:
        return "xor";
    case Cipher::package:
        return "pkg";
    }
    throw PublishError(PublishStatus::internalError, "a cipher without a name");
}

std::string encodeDescription(const FileDownloadInfo& info) {
    const nlohmann::ordered_json document{
        {"URL", info.URL},
        {"Checksum", info.Checksum},
        {"ChecksumAlgorithm", info.ChecksumAlgorithm},
        {"EncryptedFileChecksum", info.EncryptedFileChecksum},
        {"EncryptionAlgorithm", info.EncryptionAlgorithm},
        {"Size", info.Size},
        {"Version", info.Version},
    };
    return document.dump(2) + "\n";
}

FileDownloadInfo describePlainEngine(const PublishOptions& options, const fs::path& engine,
                                     std::size_t size) {
    FileDownloadInfo info;
    info.URL = options.url;
    info.Checksum = computeFileChecksum(engine, options.digest);
    info.ChecksumAlgorithm = options.digest;
    info.EncryptionAlgorithm = descriptionWordOf(options.cipher);
    info.Size = static_cast<std::int64_t>(size);
    info.Version = options.version;
    return info;
}

Bytes encipher(const Bytes& engine, const FileDownloadInfo& info) {
    XorResult result = computeXOREncryption(engine, info.Checksum);
    if (result.code == kXorContentTooShort) {
        throw PublishError(PublishStatus::badData, "the engine is shorter than its key, its digest of " +
                                                       std::to_string(info.Checksum.size() / 2) + " bytes");
    }
    if (result.code != kXorSuccess) {
        throw PublishError(PublishStatus::internalError,
                           "the engine cannot be enciphered: code " + std::to_string(result.code));
    }
    return std::move(*result.data);
}

Bytes transferredFor(const PublishOptions& options, const Bytes& engine, const FileDownloadInfo& info) {
    switch (options.cipher) {
    case Cipher::none:
        return engine;
    case Cipher::exclusiveOr:
        return encipher(engine, info);
    case Cipher::package:
        return contentsOf(options.input);
    }
    throw PublishError(PublishStatus::internalError, "an unknown cipher");
}

/// Does what the installing program will do with these files.
void checkDeciphering(const FileDownloadInfo& info, const StagedFile& transferred,
                      const StagedFile& deciphered) {
    const int code = decryptXORFile(info, deciphered.path(), transferred.path());
    if (code != kXorSuccess ||
        computeFileChecksum(deciphered.path(), info.ChecksumAlgorithm) != info.Checksum) {
        throw PublishError(PublishStatus::internalError,
                           "the enciphered engine does not decipher back to the engine");
    }
}

Publication writeAndCommit(const PublishOptions& options, FileDownloadInfo info, const Bytes& transferred) {
    platform::createDirectoryWithIntermediates(options.output);
    const bool plain = options.cipher == Cipher::none;
    const std::string suffix = plain ? "" : encryptedFileSuffix(info.EncryptionAlgorithm);
    const StagedFile engine(options.output, options.name + suffix);
    engine.write(transferred);
    info.EncryptedFileChecksum = computeFileChecksum(engine.path(), options.digest);
    if (options.cipher == Cipher::exclusiveOr) {
        const StagedFile deciphered(options.output, options.name + ".deciphered");
        checkDeciphering(info, engine, deciphered);
    }

    const StagedFile description(options.output, "downloadinstaller.json");
    const std::string document = encodeDescription(info);
    description.write(bytesOf(document));
    if (decodeFileDownloadInfo(bytesOf(document)) != info) {
        throw PublishError(PublishStatus::internalError,
                           "the description does not read back as it was written");
    }

    // A description must never announce a file that is not there.
    engine.commit();
    description.commit();
    return {info, engine.target(), description.target()};
}

} // namespace

Publication publish(const PublishOptions& options) {
    const fs::path& plainEngine = options.cipher == Cipher::package ? options.plainEngine : options.input;
    const Bytes engine = contentsOf(plainEngine);
    const FileDownloadInfo info = describePlainEngine(options, plainEngine, engine.size());
    const Bytes transferred = transferredFor(options, engine, info);
    try {
        return writeAndCommit(options, info, transferred);
    } catch (const platform::Error& error) {
        throw PublishError(PublishStatus::cannotCreate, error.localizedDescription());
    } catch (const fs::filesystem_error& error) {
        throw PublishError(PublishStatus::cannotCreate, error.what());
    }
}

} // namespace orvane::tools
