#include "tools/Publisher.h"

#include "platform/Digest.h"
#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/DescriptionJson.h"
#include "tools/PublicationFolder.h"
#include "tools/ToolError.h"
#include "tools/WorkFolder.h"
#include "verify/Crypto.h"

#include <algorithm>
#include <optional>
#include <unistd.h>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kChunkSize = std::size_t{1} << 20; // a multiple of both key sizes

/// Passes a file's contents on in chunks, each but the last of `kChunkSize` bytes.
template <typename Take>
void forEachChunk(const fs::path& file, const std::string& what, const ProgressHandler& progress, Take take) {
    const auto total = static_cast<std::int64_t>(fs::file_size(file));
    const platform::FileHandle handle = platform::FileHandle::forReading(file);
    std::int64_t done = 0;
    report(progress, {.what = what, .done = done, .total = total});
    for (Bytes chunk = handle.readUpToCount(kChunkSize); !chunk.empty();
         chunk = handle.readUpToCount(kChunkSize)) {
        take(ByteView(chunk));
        done += static_cast<std::int64_t>(chunk.size());
        report(progress, {.what = what, .done = done, .total = total});
    }
}

platform::Digest digestNamed(const std::string& algorithm) {
    return platform::Digest(algorithm == "md5" ? platform::DigestAlgorithm::md5
                                               : platform::DigestAlgorithm::sha256);
}

std::string digestOf(const fs::path& file, const std::string& algorithm, const ProgressHandler& progress) {
    platform::Digest digest = digestNamed(algorithm);
    forEachChunk(file, "reading " + file.string(), progress, [&](ByteView chunk) { digest.update(chunk); });
    return hexEncodedString(digest.final());
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

void checkSize(const fs::path& file) {
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(file, failure);
    if (failure) {
        throw ToolError(ExitStatus::noInput, file.string() + ": " + failure.message());
    }
    if (size == 0) {
        throw ToolError(ExitStatus::badData, file.string() + " is empty");
    }
}

FileDownloadInfo describePlainEngine(const PublishOptions& options, const ProgressHandler& progress) {
    const fs::path& engine = options.cipher == Cipher::package ? options.plainEngine : options.input;
    checkSize(engine);
    checkSize(options.input);
    FileDownloadInfo info;
    try {
        info.Checksum = digestOf(engine, options.digest, progress);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::noInput, error.localizedDescription());
    }
    info.URL = options.url();
    info.ChecksumAlgorithm = options.digest;
    info.EncryptionAlgorithm = descriptionWordOf(options.cipher);
    info.Size = static_cast<std::int64_t>(fs::file_size(engine));
    info.Version = options.version;
    const auto keySize = static_cast<std::int64_t>(info.Checksum.size() / 2);
    if (options.cipher == Cipher::exclusiveOr && info.Size < keySize) {
        throw ToolError(ExitStatus::badData, "the engine is shorter than its key, its digest of " +
                                                 std::to_string(keySize) + " bytes");
    }
    return info;
}

Bytes encrypted(ByteView chunk, const std::string& key) {
    // A last chunk that is shorter than the key takes the key's beginning.
    XorResult result =
        computeXOREncryption(chunk, std::string_view(key).substr(0, std::min(key.size(), 2 * chunk.size())));
    if (result.code != kXorSuccess) {
        throw ToolError(ExitStatus::internalError,
                        "the engine cannot be encrypted: code " + std::to_string(result.code));
    }
    return std::move(*result.data);
}

/// Answers the digest of what was written.
std::string writeTransferred(const PublishOptions& options, const std::string& key, const fs::path& file,
                             const ProgressHandler& progress) {
    const platform::FileHandle output = platform::FileHandle::forWritingNew(file);
    platform::Digest digest = digestNamed(options.digest);
    const auto write = [&](ByteView chunk) {
        output.write(chunk);
        digest.update(chunk);
    };
    forEachChunk(options.input, "writing " + file.filename().string(), progress, [&](ByteView chunk) {
        if (options.cipher == Cipher::exclusiveOr) {
            write(encrypted(chunk, key));
        } else {
            write(chunk);
        }
    });
    return hexEncodedString(digest.final());
}

/// Does what a bootstrapper will do with these files.
void checkDecryption(const FileDownloadInfo& info, const fs::path& transferred,
                     const ProgressHandler& progress) {
    const std::string what = "decrypting " + transferred.filename().string() + " again";
    report(progress, {.what = what});
    const fs::path decrypted = transferred.parent_path() / ".decrypted";
    const int code = decryptXORFile(info, decrypted, transferred);
    if (code != kXorSuccess || computeFileChecksum(decrypted, info.ChecksumAlgorithm) != info.Checksum) {
        throw ToolError(ExitStatus::internalError, "the encrypted engine does not decrypt to the engine");
    }
    fs::remove(decrypted);
}

/// A folder that publishing would have to create is below the nearest one that exists.
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

/// Where a version's folder is made: in the publication's folder itself, so that renaming suffices in the
/// end, or elsewhere for a dry run. Removed with all it holds unless it was committed.
class Stage {
public:
    explicit Stage(const PublishOptions& options) {
        if (options.dryRun) {
            checkThatFolderCanBeWritten(options.folder);
            path_ = work_.emplace().path() / options.version;
        } else {
            platform::createDirectoryWithIntermediates(options.folder);
            path_ = options.folder / ("." + options.version + ".partial");
            fs::remove_all(path_); // of a process that was ended
        }
        platform::createDirectoryWithIntermediates(path_);
    }
    ~Stage() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    const fs::path& path() const { return path_; }

private:
    std::optional<WorkFolder> work_;
    fs::path path_;
};

/// Whether a version that is published already has this description and this transferred file.
bool isPublished(const fs::path& folder, const Publication& publication) {
    if (!fs::exists(fs::symlink_status(folder))) {
        return false;
    }
    const PublishedVersion published =
        PublicationFolder(folder.parent_path()).version(folder.filename().string());
    const FileDownloadInfo& info = publication.description;
    if (published.description != info ||
        computeFileChecksum(published.engineFile, info.ChecksumAlgorithm) != info.EncryptedFileChecksum) {
        throw ToolError(ExitStatus::cannotCreate,
                        folder.string() + " is published with other contents; a published version "
                                          "never changes: raise the version");
    }
    return true;
}

Publication writeAndCommit(const PublishOptions& options, FileDownloadInfo info,
                           const ProgressHandler& progress) {
    const Stage stage(options);
    const bool plain = options.cipher == Cipher::none;
    const std::string name = options.name + (plain ? "" : encryptedFileSuffix(info.EncryptionAlgorithm));
    info.EncryptedFileChecksum = writeTransferred(options, info.Checksum, stage.path() / name, progress);
    if (options.cipher == Cipher::exclusiveOr) {
        checkDecryption(info, stage.path() / name, progress);
    }
    const std::string document = documentOf(info);
    platform::writeNewFile(stage.path() / kDescriptionName, bytesOf(document));
    if (decodeFileDownloadInfo(bytesOf(document)) != info) {
        throw ToolError(ExitStatus::internalError, "the description does not read back as it was written");
    }
    const fs::path folder = options.folder / options.version;
    Publication publication{info, folder / name, folder / kDescriptionName};
    publication.isNew = !isPublished(folder, publication);
    if (publication.isNew && !options.dryRun) {
        fs::rename(stage.path(), folder);
    }
    return publication;
}

} // namespace

Publication publish(const PublishOptions& options, const ProgressHandler& progress) {
    const FileDownloadInfo info = describePlainEngine(options, progress);
    try {
        return writeAndCommit(options, info, progress);
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    } catch (const fs::filesystem_error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.what());
    }
}

} // namespace orvane::tools
