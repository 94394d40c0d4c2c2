#include "tools/CauseFinder.h"

#include "tests/tools/ReportSamples.h"

#include <gtest/gtest.h>
#include <set>

namespace orvane::tools {
namespace {

using Lines = std::vector<std::string>;

const std::string kDigest(64, 'a');
const std::string kNoDescription = "Unable to download orvane file description: ";
const std::string kFallback = "Cannot download latest orvane, trying use existing orvane";
const std::string kLaunch = "Spawning orvane with args --pid 7 --owner x";
const std::string kNothing = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";

std::string described(const std::string& cipher, const std::string& checksum = kDigest) {
    return R"(Orvane download info is {"Version": "14.2.7", "Checksum": ")" + checksum +
           R"(", "ChecksumAlgorithm": "sha256", "EncryptionAlgorithm": ")" + cipher + "\"}";
}

/// What a failed description leaves, as the platform words errors.
Lines failedDescription(const std::string& domain, int code, const std::string& text) {
    return {kNoDescription + "Optional(Error Domain=" + domain + " Code=" + std::to_string(code) + " \"" +
                text + "\" UserInfo={NSLocalizedDescription=" + text + "})",
            kFallback};
}

Lines afterDownload(const std::string& description, const std::string& digests) {
    return {description, "Downloading latest orvane", "Orvane download finished",
            "Checking if orvane checksums match", digests};
}

std::string_view causeIn(const std::string& text, LogSource source = LogSource::crashReport) {
    const RunLog log(text);
    return diagnose(log, source).cause->id;
}

struct Sample {
    std::string cause;
    Lines lines;
    LogSource source = LogSource::crashReport;
};

/// At least one log for each cause; where a Mac words the error, in French.
const std::vector<Sample>& samples() {
    static const std::string kMacText = "La connexion Internet semble interrompue.";
    static const std::string kTransfer = "Unable to download orvane: ";
    static const std::string kFolder = "Unable to create orvane directory: /opt/Varlen: ";
    static const std::string kChecksum = "Unable to compute file checksum: /opt/x: ";
    static const std::string kDecrypt = "Unable to decrypt orvane: ";
    static const std::string kSpawn = "Cannot spawn orvane: /opt/x: ";
    static const std::string kInvalid = "invalid input: ";
    static const std::string kLocal = "crypted orvane local checksum is ";
    static const auto kFile = LogSource::file;
    static const std::vector<Sample> all{
        {"offline", failedDescription("NSURLErrorDomain", -1009, kMacText)},
        {"name-not-resolved", failedDescription("NSURLErrorDomain", -1003, kMacText)},
        {"name-not-resolved", {kTransfer + "Could not resolve host: downloads.kestrix.invalid"}},
        {"connection-refused", failedDescription("NSURLErrorDomain", -1004, kMacText)},
        {"connection-refused", {kTransfer + "Failed to connect to localhost port 1 after 0 ms"}},
        {"proxy-refused", {kTransfer + "CONNECT tunnel failed, response 407 (x)"}},
        {"proxy-refused", failedDescription("libcurl", 5, "Could not resolve proxy: x")},
        {"no-answer-in-time", failedDescription("", 408, "Request timeout")},
        {"no-answer-in-time", failedDescription("NSURLErrorDomain", -1001, kMacText)},
        {"download-stalled", {kTransfer + "The request timed out (localhost)"}},
        {"connection-broken", {kTransfer + "transfer closed with 5 bytes remaining to read"}},
        {"connection-broken", failedDescription("NSURLErrorDomain", -1005, kMacText)},
        {"certificate-expired", {kTransfer + "SSL certificate problem: certificate has expired (x)"}},
        {"certificate-expired", failedDescription("NSURLErrorDomain", -1201, kMacText)},
        {"certificate-of-another-host",
         {kTransfer + "SSL: no alternative certificate subject name matches target host name 'x'"}},
        {"certificate-not-trusted", {kTransfer + "SSL certificate problem: self-signed certificate (x)"}},
        {"certificate-not-trusted", failedDescription("NSURLErrorDomain", -1202, kMacText)},
        {"secure-connection-failed", failedDescription("NSURLErrorDomain", -1200, kMacText)},
        {"not-https", {kTransfer + "The address \"ftp:x\" is refused: it does not begin with https:"}},
        {"redirect-loop", failedDescription("libcurl", 47, "Maximum (20) redirects followed (x)")},
        {"answer-not-http", {kTransfer + "Received HTTP/0.9 when not allowed (x)"}},
        {"answer-too-large", failedDescription("OrvaneBootstrap", 413, "The answer is larger than 64 MiB")},
        {"page-instead-of-description",
         {"Orvane download info is \n<html>",
          kNoDescription + "The document is not valid JSON: a syntax error", kFallback}},
        {"description-damaged",
         {"Orvane download info is {", kNoDescription + "The document is not valid JSON: a syntax error",
          kFallback}},
        {"description-damaged", {kNoDescription + "The document is not a JSON object", kFallback}},
        {"description-incomplete", {kNoDescription + "The key Size is missing", kFallback}},
        {"description-not-fetched", failedDescription("NSURLErrorDomain", -998, kMacText)},
        {"description-not-fetched", {kFallback}},
        {"transfer-failed", {kTransfer + kMacText}},
        {"digest-unsupported",
         afterDownload(described(""), "de" + kLocal + ", remote checksum is" + kDigest)},
        {"digest-in-capitals", afterDownload(described("", std::string(64, 'A')),
                                             "de" + kLocal + kDigest + ", remote checksum is" + kDigest)},
        {"digest-missing", afterDownload(described("xor"), "en" + kLocal + kDigest + ", remote checksum is")},
        {"download-empty",
         afterDownload(described(""), "de" + kLocal + kNothing + ", remote checksum is" + kDigest)},
        {"download-differs", afterDownload(described("xor"), "en" + kLocal + std::string(64, 'b') +
                                                                 ", remote checksum is" + kDigest)},
        {"bootstrapper-too-old", {"bootstrapper major version is 9 and orvane major version is 14"}},
        {"publication-too-old", {"bootstrapper major version is 14 and orvane major version is 9"}},
        {"publication-too-old", {"bootstrapper major version is 14 and orvane major version is v14"}},
        {"cipher-unsupported", {"Encryption algorithm XOR is unsupported"}},
        {"nothing-to-uninstall",
         {"bootstrapper major version is 14 and orvane major version is 15",
          "process is uninstallation, but orvane does not exist on the machine"}},
        {"folder-not-permitted", {kFolder + "Permission denied (EACCES)"}},
        {"folder-blocked", {kFolder + "Not a directory (ENOTDIR)"}},
        {"folder-not-made", {kFolder + "Read-only file system (EROFS)"}},
        {"download-not-writable",
         {kTransfer + "L’opération n’a pas pu s’achever. (OrvaneBootstrap.DownloadError erreur 0.)"}},
        {"engine-is-a-folder", {kChecksum + "Is a directory (EISDIR)", kLaunch}},
        {"engine-not-readable", {kChecksum + "Permission denied (EACCES)", kLaunch}},
        {"key-unsuitable", {described("xor"), kDecrypt + "code 3"}},
        {"package-not-installed", {described("pkg"), kDecrypt + "code 1"}},
        {"package-not-installed", {kDecrypt + "code 127"}},
        {"engine-in-use", {kDecrypt + "/opt/x: Text file busy (ETXTBSY)"}},
        {"disk-full", {kDecrypt + "/opt/x: No space left on device (ENOSPC)"}},
        {"engine-not-replaceable", {kDecrypt + "/opt/x: Permission denied (EACCES)"}},
        {"not-decrypted", {kDecrypt + "L’opération n’a pas pu s’achever."}},
        {"engine-not-a-program", {kSpawn + "Exec format error (ENOEXEC)"}},
        {"engine-missing", {kSpawn + "No such file or directory (ENOENT)"}},
        {"engine-not-permitted", {kSpawn + "Operation not permitted (EPERM)"}},
        {"engine-not-started", {kSpawn + "Le fichier n’existe pas."}},
        {"engine-message", {kLaunch}},
        {"engine-message", {kFallback, kLaunch}},
        {"engine-does-not-run", {kInvalid + "the engine could not be asked for its version: x"}, kFile},
        {"publication-address", {kInvalid + "the engine's address is not a URL: a b"}, kFile},
        {"publication-version", {kInvalid + "a version has no first component: \".\""}, kFile},
        {"publication-key", {kInvalid + "content cannot be deciphered with an empty key"}, kFile},
        {"engine-not-written", {"unexpected error: OrvaneBootstrap/crypto line 181: x"}, kFile},
        {"engine-message-invalid", {kInvalid + "an engine message is not valid UTF-8"}, kFile},
        {"engine-message-invalid", {kInvalid + "a restart question is shorter than its step number"}, kFile},
        {"language-setting", {kInvalid + "a language tag consists of hyphens only"}, kFile},
        {"out-of-resources", {"unexpected error: no background thread can be started: x"}, kFile},
        {"program-stopped", {"programming error: the progress bar is gone"}, kFile},
        {"engine-took-over", {kLaunch}, kFile},
        {"ended-at-start", {"Checking preferred languages", "Orvane path is /opt/x"}, kFile},
        {"ended-asking-version", {"Spawning orvane with args --version"}, kFile},
        {"ended-downloading", {"Downloading latest orvane"}, kFile},
        {"ended-checking", {"Orvane download finished", "Checking if orvane checksums match"}, kFile},
        {"ended-decrypting", {"Orvane is encrypted, decrypting it"}, kFile},
        {"uninstallation-declined", {"User didn't want to start the procedure"}, kFile},
        {"log-cut-off", {"Downloading latest orvane"}},
        {"log-empty", {}},
        {"log-empty", {"cannot send crash report to orvane server: Request timeout"}, kFile},
        {"unrecognised", {"something else"}},
    };
    return all;
}

TEST(CauseFinderTest, FindsTheCauseOfEachLog) {
    for (const Sample& sample : samples()) {
        const std::string log = logOf(sample.lines);
        EXPECT_EQ(causeIn(log, sample.source), sample.cause) << log;
    }
}

TEST(CauseFinderTest, FindsEveryCauseOfTheCatalogue) {
    std::set<std::string_view> found;
    for (const Sample& sample : samples()) {
        found.insert(sample.cause);
    }
    for (const Cause& cause : causes()) {
        EXPECT_TRUE(found.contains(cause.id)) << cause.id;
    }
}

TEST(CauseFinderTest, TheCauseIsThatOfTheFirstFatalLine) {
    EXPECT_EQ(causeIn(logOf({"Unable to compute file checksum: /opt/x: Is a directory (EISDIR)",
                             "Checking if orvane versions match", "Spawning orvane with args --version",
                             "invalid input: the engine could not be asked for its version: x"})),
              "engine-is-a-folder");
}

TEST(CauseFinderTest, AVersionThatCouldNotBeAskedForIsNoFault) {
    EXPECT_EQ(causeIn(logOf({"Unable to retrieve file version: /opt/x: No such file or directory (ENOENT)",
                             "Downloading latest orvane", "Unable to download orvane: Recv failure: x"})),
              "connection-broken");
}

TEST(CauseFinderTest, TheDigestsBeforeADownloadEndNothing) {
    EXPECT_EQ(causeIn(logOf({described(""), "decrypted orvane local checksum is , remote checksum isaa"}),
                      LogSource::file),
              "ended-checking");
}

TEST(CauseFinderTest, AReportThatWasNotDeliveredHidesNoCause) {
    EXPECT_EQ(causeIn(logOf({"Encryption algorithm XOR is unsupported",
                             "cannot send crash report to orvane server: Could not resolve host: x"}),
                      LogSource::file),
              "cipher-unsupported");
}

TEST(CauseFinderTest, ALogThatBreaksOffWithinALineShowsNoCause) {
    EXPECT_EQ(causeIn(logOf({kLaunch}) + "12:34:"), "log-cut-off");
    EXPECT_EQ(causeIn(logOf({"Cannot spawn orvane: x (ENOENT)"}) + "12:34:"), "engine-missing");
}

TEST(CauseFinderTest, NamesTheLineThatShowsTheCause) {
    const RunLog description(logOf(failedDescription("NSURLErrorDomain", -1009, "x")));
    EXPECT_EQ(diagnose(description, LogSource::crashReport).line, description.lines().front());
    const RunLog empty("");
    EXPECT_EQ(diagnose(empty, LogSource::file).line, "");
}

} // namespace
} // namespace orvane::tools
