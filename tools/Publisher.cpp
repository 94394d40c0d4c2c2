#include "tools/Publisher.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/DescriptionJson.h"
#include "tools/ToolError.h"
#include "tools/WorkFolder.h"
#include "verify/Crypto.h"

#include <optional>
#include <unistd.h>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

/// A file that appears under its name only when it is committed, and leaves nothing behind otherwise.
class StagedFile {
public:
    /// Staged in `stage`, the target's own folder or, for a file that is never committed, another one.
    StagedFile(const fs::path& stage, fs::path target)
        : target_(std::move(target)),
          staged_(stage / fs::path(".").concat(target_.filename().native()).concat(".partial")) {
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
        throw ToolError(ExitStatus::noInput, error.localizedDescription());
    }
    if (contents.empty()) {
        throw ToolError(ExitStatus::badData, file.string() + " is empty");
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
    throw ToolError(ExitStatus::internalError, "a cipher without a name");
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
        throw ToolError(ExitStatus::badData, "the engine is shorter than its key, its digest of " +
                                                 std::to_string(info.Checksum.size() / 2) + " bytes");
    }
    if (result.code != kXorSuccess) {
        throw ToolError(ExitStatus::internalError,
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
    throw ToolError(ExitStatus::internalError, "an unknown cipher");
}

/// Does what the installing program will do with these files.
void checkDeciphering(const FileDownloadInfo& info, const StagedFile& transferred,
                      const StagedFile& deciphered) {
    const int code = decryptXORFile(info, deciphered.path(), transferred.path());
    if (code != kXorSuccess ||
        computeFileChecksum(deciphered.path(), info.ChecksumAlgorithm) != info.Checksum) {
        throw ToolError(ExitStatus::internalError,
                        "the enciphered engine does not decipher back to the engine");
    }
}

/// A folder that publishing would have to make lies in the nearest one that is there already.
void checkThatFolderCanBeWritten(const fs::path& folder) {
    fs::path nearest = fs::absolute(folder);
    while (!fs::exists(fs::symlink_status(nearest)) && nearest.has_relative_path()) {
        nearest = nearest.parent_path();
    }
    if (!fs::is_directory(nearest)) {
        throw ToolError(ExitStatus::cannotCreate, nearest.string() + " is not a folder");
    }
    if (::access(nearest.c_str(), W_OK | X_OK) != 0) {
        throw ToolError(ExitStatus::cannotCreate, nearest.string() + " cannot be written");
    }
}

/// Where files are made: in the output folder itself, so that renaming suffices in the end, or elsewhere for
/// a dry run.
class Stage {
public:
    explicit Stage(const PublishOptions& options) {
        if (options.dryRun) {
            checkThatFolderCanBeWritten(options.output);
            folder_ = work_.emplace().path();
        } else {
            platform::createDirectoryWithIntermediates(options.output);
            folder_ = options.output;
        }
    }

    const fs::path& folder() const { return folder_; }

private:
    std::optional<WorkFolder> work_;
    fs::path folder_;
};

Publication writeAndCommit(const PublishOptions& options, FileDownloadInfo info, const Bytes& transferred,
                           const ProgressHandler& progress) {
    const Stage stage(options);
    const bool plain = options.cipher == Cipher::none;
    const std::string suffix = plain ? "" : encryptedFileSuffix(info.EncryptionAlgorithm);
    const StagedFile engine(stage.folder(), options.output / (options.name + suffix));
    const std::string name = engine.target().filename().string();
    tell(progress, "writing " + name);
    engine.write(transferred);
    tell(progress, "digest of " + name);
    info.EncryptedFileChecksum = computeFileChecksum(engine.path(), options.digest);
    if (options.cipher == Cipher::exclusiveOr) {
        tell(progress, "deciphering " + name + " again");
        const StagedFile deciphered(stage.folder(), options.output / (options.name + ".deciphered"));
        checkDeciphering(info, engine, deciphered);
    }

    const StagedFile description(stage.folder(), options.output / "downloadinstaller.json");
    const std::string document = jsonOf(info).dump(2) + "\n";
    description.write(bytesOf(document));
    if (decodeFileDownloadInfo(bytesOf(document)) != info) {
        throw ToolError(ExitStatus::internalError, "the description does not read back as it was written");
    }

    if (!options.dryRun) {
        // A description must never announce a file that is not there.
        engine.commit();
        description.commit();
    }
    return {info, engine.target(), description.target()};
}

} // namespace

Publication publish(const PublishOptions& options, const ProgressHandler& progress) {
    const fs::path& plainEngine = options.cipher == Cipher::package ? options.plainEngine : options.input;
    tell(progress, "reading " + plainEngine.string());
    const Bytes engine = contentsOf(plainEngine);
    tell(progress, "digest of " + plainEngine.string());
    const FileDownloadInfo info = describePlainEngine(options, plainEngine, engine.size());
    tell(progress, "preparing " + options.name);
    const Bytes transferred = transferredFor(options, engine, info);
    try {
        return writeAndCommit(options, info, transferred, progress);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    } catch (const fs::filesystem_error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.what());
    }
}

} // namespace orvane::tools
