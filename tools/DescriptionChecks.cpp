#include "tools/DescriptionChecks.h"

#include "platform/Files.h"
#include "platform/Url.h"
#include "tools/ProgramFormat.h"
#include "verify/Crypto.h"
#include "verify/Versions.h"

namespace orvane::tools {
namespace {

Finding good(const std::string& check, const std::string& text) { return {check, Verdict::good, text}; }
Finding warning(const std::string& check, const std::string& text) { return {check, Verdict::warning, text}; }
Finding failed(const std::string& check, const std::string& text) { return {check, Verdict::failed, text}; }

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

bool isEnciphered(const FileDownloadInfo& info) { return !info.EncryptionAlgorithm.empty(); }

Finding checkVersion(const FileDownloadInfo& info) {
    const auto major = acceptedMajorVersion(info);
    if (!major) {
        return failed("version", quoted(info.Version) + " has no first component: bootstrappers stop");
    }
    if (info.Version.find_first_not_of("0123456789.") != std::string::npos) {
        return warning("version", quoted(info.Version) +
                                      " holds more than numbers and points, which compare character by "
                                      "character");
    }
    return good("version", info.Version + ", for bootstrappers of major version " + *major);
}

Finding checkAlgorithm(const FileDownloadInfo& info) {
    const std::string& algorithm = info.ChecksumAlgorithm;
    if (algorithm == "md5") {
        return warning("algorithm", "md5: two files with one digest can be made; sha256 is the other choice");
    }
    if (algorithm == "sha256") {
        return good("algorithm", algorithm);
    }
    return failed("algorithm", quoted(algorithm) + " is not known; it must be md5 or sha256, in lower case");
}

Finding checkDigestText(const std::string& check, const std::string& digest, const std::string& algorithm) {
    const std::size_t length = algorithm == "md5" ? 32 : 64;
    const bool written = digest.find_first_not_of("0123456789abcdef") == std::string::npos;
    if (!written || digest.size() != length) {
        return failed(check, quoted(digest) + " never matches: " + std::to_string(length) +
                                 " hexadecimal digits in lower case are needed");
    }
    return good(check, digest);
}

Findings checkDigests(const FileDownloadInfo& info) {
    Findings findings{checkDigestText("digest", info.Checksum, info.ChecksumAlgorithm)};
    if (isEnciphered(info)) {
        findings.push_back(
            checkDigestText("transferred-digest", info.EncryptedFileChecksum, info.ChecksumAlgorithm));
    } else if (info.EncryptedFileChecksum != info.Checksum) {
        findings.push_back(warning(
            "transferred-digest", "is another than the engine's; for a plain engine it only stands in logs"));
    }
    return findings;
}

Finding checkCipher(const FileDownloadInfo& info) {
    const std::string& cipher = info.EncryptionAlgorithm;
    if (cipher.empty()) {
        return good("cipher", "none, a plain download");
    }
    if (cipher == "xor" || cipher == "pkg") {
        return good("cipher", cipher);
    }
    return failed("cipher", quoted(cipher) + " is unsupported; it must be empty, xor or pkg, in lower case");
}

Finding checkAddress(const FileDownloadInfo& info) {
    const std::string url = transferredUrl(info);
    if (!parsesAsUrl(url)) {
        return failed("address", quoted(url) + " is no URL: bootstrappers stop");
    }
    if (const auto refusal = refusalOfAddress(url)) {
        return failed("address", refusal->localizedDescription());
    }
    if (isEnciphered(info) && info.URL.find_first_of("?#") != std::string::npos) {
        return warning("address", url + ": what is appended for the cipher ends up in its query or fragment");
    }
    return good("address", url);
}

/// Only deciphering by XOR reads so many bytes; to the others the size is a word.
Finding checkSize(const FileDownloadInfo& info) {
    const auto keySize = static_cast<std::int64_t>(info.Checksum.size() / 2);
    if (info.EncryptionAlgorithm == "xor" && info.Size < keySize) {
        return failed("size", std::to_string(info.Size) + " is less than the key, the digest of " +
                                  std::to_string(keySize) + " bytes");
    }
    if (info.Size <= 0) {
        return warning("size", std::to_string(info.Size) + " is no size of a file");
    }
    return good("size", std::to_string(info.Size));
}

std::string firstBytes(const std::filesystem::path& file) {
    return std::string(textOf(platform::FileHandle::forReading(file).readUpToCount(4)));
}

Finding checkTransferredDigest(const FileDownloadInfo& info, const std::filesystem::path& file) {
    const std::string digest = computeFileChecksum(file, info.ChecksumAlgorithm);
    if (digest == transferredDigest(info)) {
        return good("transferred", "the file is the described one");
    }
    const bool looksLikeAPage = firstBytes(file).starts_with('<');
    return failed("transferred", "the file's digest is " + digest + ", described is " +
                                     transferredDigest(info) +
                                     (looksLikeAPage ? "; the file looks like a page" : ""));
}

Finding checkProgram(const std::filesystem::path& engine, const std::string& system) {
    const auto program = programIn(engine);
    if (!program) {
        return failed("program",
                      "the engine is not an executable: unknown file signature; bootstrappers cannot "
                      "start it");
    }
    if (program->systems.empty() || (!system.empty() && !program->runsOn(system))) {
        return failed("program",
                      "the engine is " + program->kind + (system.empty() ? "" : ", not for " + system));
    }
    return good("program", "the engine is " + program->kind);
}

Finding checkPackage(const std::filesystem::path& file, const std::string& system) {
    if (!isInstallerPackage(file)) {
        return failed("package", "the file is not an installer package of macOS");
    }
    if (!system.empty() && system != "macos") {
        return failed("package", system + " has no installer for packages of macOS");
    }
    return warning("package", "what the package installs, and where, shows only when it is installed");
}

Finding checkTransferredSize(const FileDownloadInfo& info, const std::filesystem::path& engine) {
    const auto size = static_cast<std::int64_t>(std::filesystem::file_size(engine));
    if (size == info.Size) {
        return good("length", "the file is as long as described");
    }
    return warning("length", "the file has " + std::to_string(size) + " bytes, described are " +
                                 std::to_string(info.Size));
}

Finding checkDeciphered(const FileDownloadInfo& info, const std::filesystem::path& file,
                        const std::filesystem::path& deciphered) {
    if (const int code = decryptXORFile(info, deciphered, file); code != kXorSuccess) {
        return failed("deciphered", "the file cannot be deciphered: code " + std::to_string(code));
    }
    const std::string digest = computeFileChecksum(deciphered, info.ChecksumAlgorithm);
    if (digest != info.Checksum) {
        return failed("deciphered", "the deciphered engine's digest is " + digest + ", described is " +
                                        info.Checksum + "; bootstrappers would start it all the same");
    }
    return good("deciphered", "the file deciphers to the described engine");
}

} // namespace

Findings checkDescription(const FileDownloadInfo& info) {
    Findings findings{checkVersion(info), checkAlgorithm(info)};
    for (const Finding& finding : checkDigests(info)) {
        findings.push_back(finding);
    }
    findings.insert(findings.end(), {checkCipher(info), checkAddress(info), checkSize(info)});
    return findings;
}

Findings checkTransferred(const FileDownloadInfo& info, const std::filesystem::path& file,
                          const std::filesystem::path& workFolder, const std::string& system) {
    Findings findings{checkTransferredDigest(info, file)};
    if (findings.back().verdict == Verdict::failed) {
        return findings;
    }
    if (info.EncryptionAlgorithm == "pkg") {
        findings.push_back(checkPackage(file, system));
        return findings;
    }
    std::filesystem::path engine = file;
    if (info.EncryptionAlgorithm == "xor") {
        engine = workFolder / "deciphered";
        findings.push_back(checkDeciphered(info, file, engine));
    }
    if (findings.back().verdict == Verdict::good) {
        findings.push_back(checkTransferredSize(info, file));
        findings.push_back(checkProgram(engine, system));
    }
    return findings;
}

std::string transferredUrl(const FileDownloadInfo& info) {
    return isEnciphered(info) ? info.URL + encryptedFileSuffix(info.EncryptionAlgorithm) : info.URL;
}

const std::string& transferredDigest(const FileDownloadInfo& info) {
    return isEnciphered(info) ? info.EncryptedFileChecksum : info.Checksum;
}

std::optional<std::string> acceptedMajorVersion(const FileDownloadInfo& info) {
    if (info.Version.find_first_not_of('.') == std::string::npos) {
        return std::nullopt;
    }
    return majorVersion(info.Version);
}

} // namespace orvane::tools
