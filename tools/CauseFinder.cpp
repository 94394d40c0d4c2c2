#include "tools/CauseFinder.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <span>
#include <string>

namespace orvane::tools {
namespace {

/// A line that ends a run, the one of these texts that it holds, and the cause that this shows. A rule
/// without texts takes every such line.
struct Rule {
    std::string_view prefix;
    std::string_view cause;
    std::array<std::string_view, 8> texts = {};
};

constexpr std::string_view kNoDescription = "Unable to download orvane file description: ";
constexpr std::string_view kNoTransfer = "Unable to download orvane: ";
constexpr std::string_view kNoFolder = "Unable to create orvane directory: ";
constexpr std::string_view kNoChecksum = "Unable to compute file checksum: ";
constexpr std::string_view kNoDecryption = "Unable to decrypt orvane: ";
constexpr std::string_view kNoLaunch = "Cannot spawn orvane: ";
constexpr std::string_view kDecryptionCode = "Unable to decrypt orvane: code ";
constexpr std::string_view kFallback = "Cannot download latest orvane, trying use existing orvane";
constexpr std::string_view kLaunch = "Spawning orvane with args --pid ";
constexpr std::string_view kDownloaded = "Orvane download finished";

/// Of a failed request, whether the description's or the engine's. The first rule that fits counts.
constexpr std::array kNetworkRules{
    Rule{"", "not-https", {"it does not begin with https:"}},
    Rule{"", "answer-too-large", {"The answer is larger than 64 MiB"}},
    Rule{"", "offline", {"NSURLErrorDomain Code=-1009"}},
    Rule{"",
         "proxy-refused",
         {"CONNECT tunnel failed", "Could not resolve proxy", "from proxy after CONNECT"}},
    Rule{"",
         "name-not-resolved",
         {"Could not resolve host", "NSURLErrorDomain Code=-1003", "NSURLErrorDomain Code=-1006"}},
    Rule{"",
         "connection-refused",
         {"Failed to connect to", "Couldn't connect to server", "NSURLErrorDomain Code=-1004"}},
    Rule{"",
         "certificate-expired",
         {"certificate has expired", "certificate is not yet valid", "NSURLErrorDomain Code=-1201",
          "NSURLErrorDomain Code=-1204"}},
    Rule{"", "certificate-of-another-host", {"no alternative certificate subject name matches"}},
    Rule{"",
         "certificate-not-trusted",
         {"SSL certificate problem", "NSURLErrorDomain Code=-1202", "NSURLErrorDomain Code=-1203"}},
    Rule{"", "redirect-loop", {"redirects followed", "NSURLErrorDomain Code=-1007"}},
    Rule{"",
         "connection-broken",
         {"transfer closed with", "Recv failure", "Send failure", "Empty reply", "Connection died",
          "unexpected eof", "was not closed cleanly", "NSURLErrorDomain Code=-1005"}},
    Rule{"",
         "secure-connection-failed",
         {"SSL connect error", "SSL routines", "wrong version number", "OpenSSL/", "TLS connect error",
          "SSL_ERROR", "NSURLErrorDomain Code=-1200"}},
    Rule{"",
         "answer-not-http",
         {"HTTP/0.9", "Weird server reply", "content encoding", "content unencoding", "chunk",
          "Invalid Content-Length", "response headers", "Out of memory"}},
};

constexpr std::array kDescriptionRules{
    Rule{kNoDescription,
         "no-answer-in-time",
         {"Request timeout", "Code=408", "timed out", "NSURLErrorDomain Code=-1001"}},
    Rule{kNoDescription, "description-incomplete", {"The key ", "The value of "}},
    Rule{kNoDescription,
         "description-damaged",
         {"The document is not valid JSON", "The document is not a JSON object"}},
    Rule{kNoDescription, "description-not-fetched"},
};

/// Lines after which no run goes on.
constexpr std::array kFatalRules{
    Rule{kNoTransfer, "download-not-writable", {"OrvaneBootstrap.DownloadError"}},
    Rule{kNoTransfer, "download-stalled", {"timed out", "too slow"}},
    Rule{kNoTransfer, "transfer-failed"},
    Rule{kNoFolder,
         "folder-not-permitted",
         {"(EACCES)", "(EPERM)", "Permission denied", "Operation not permitted"}},
    Rule{kNoFolder, "folder-blocked", {"(ENOTDIR)", "(EEXIST)", "Not a directory", "File exists"}},
    Rule{kNoFolder, "folder-not-made"},
    Rule{kNoChecksum, "engine-is-a-folder", {"(EISDIR)", "Is a directory"}},
    Rule{kNoChecksum, "engine-not-readable"},
    Rule{kNoDecryption, "engine-in-use", {"(ETXTBSY)", "Text file busy"}},
    Rule{kNoDecryption, "disk-full", {"(ENOSPC)", "(EDQUOT)", "No space left on device", "quota exceeded"}},
    Rule{kNoDecryption,
         "engine-not-replaceable",
         {"(EACCES)", "(EPERM)", "(EROFS)", "(EISDIR)", "Permission denied", "Operation not permitted",
          "Read-only file system", "Is a directory"}},
    Rule{kNoDecryption, "not-decrypted"},
    Rule{kNoLaunch,
         "engine-not-a-program",
         {"(ENOEXEC)", "(EBADARCH)", "(EBADMACHO)", "Exec format error", "Bad CPU type"}},
    Rule{kNoLaunch, "engine-missing", {"(ENOENT)", "No such file or directory"}},
    Rule{kNoLaunch,
         "engine-not-permitted",
         {"(EACCES)", "(EPERM)", "(EROFS)", "Permission denied", "Operation not permitted",
          "Read-only file system"}},
    Rule{kNoLaunch, "engine-not-started"},
};

/// The reasons with which the program stops, wherever they stand in the line.
constexpr std::array kStopRules{
    Rule{"", "engine-does-not-run", {"the engine could not be asked for its version"}},
    Rule{"", "publication-address", {"is not a URL"}},
    Rule{"", "publication-version", {"has no first component"}},
    Rule{"", "publication-key", {"with an empty key"}},
    Rule{"", "engine-not-written", {"crypto line 181"}},
    Rule{"", "engine-message-invalid", {"engine message is not valid UTF-8", "restart question"}},
    Rule{"", "language-setting", {"language tag consists of hyphens only"}},
    Rule{"",
         "out-of-resources",
         {"no background thread can be started", "a command could not be started",
          "no thread can be started"}},
    Rule{"", "program-stopped"},
};

bool holds(LogLine line, std::string_view text) { return line.find(text) != std::string_view::npos; }

bool fits(const Rule& rule, LogLine line) {
    const bool takesAll = rule.texts.front().empty();
    return line.starts_with(rule.prefix) && (takesAll || std::ranges::any_of(rule.texts, [line](auto text) {
                                                 return !text.empty() && holds(line, text);
                                             }));
}

std::optional<Diagnosis> firstRule(std::span<const Rule> rules, LogLine line) {
    const auto found = std::ranges::find_if(rules, [line](const Rule& rule) { return fits(rule, line); });
    return found == rules.end() ? std::nullopt : std::optional(Diagnosis{&causeNamed(found->cause), line});
}

Diagnosis shownBy(std::string_view cause, LogLine line) { return {&causeNamed(cause), line}; }

bool isStop(LogLine line) {
    return line.starts_with("programming error: ") || line.starts_with("invalid input: ") ||
           line.starts_with("unexpected error: ");
}

/// A cipher's key has three flaws; other codes, and all with a package, are the system installer's.
Diagnosis decryptionCode(const RunLog& log, LogLine line) {
    const auto description = descriptionIn(log);
    const std::string_view code = line.substr(kDecryptionCode.size());
    const bool keysCode = code == "1" || code == "2" || code == "3";
    const bool isPackage = description && description->encryptionAlgorithm == "pkg";
    return shownBy(keysCode && !isPackage ? "key-unsuitable" : "package-not-installed", line);
}

std::optional<Diagnosis> fatalLine(const RunLog& log, LogLine line) {
    if (isStop(line)) {
        return firstRule(kStopRules, line);
    }
    if (line.starts_with(kDecryptionCode)) {
        return decryptionCode(log, line);
    }
    if (line.starts_with(kNoTransfer) && !holds(line, "OrvaneBootstrap.DownloadError")) {
        if (const auto reason = firstRule(kNetworkRules, line)) {
            return reason;
        }
    }
    return firstRule(kFatalRules, line);
}

Diagnosis noDescription(const RunLog& log) {
    const auto text = log.lastAfter(kNoDescription);
    if (!text) {
        return shownBy("description-not-fetched", kFallback);
    }
    const LogLine line(text->data() - kNoDescription.size(), text->size() + kNoDescription.size());
    if (const auto reason = firstRule(kNetworkRules, line)) {
        return *reason;
    }
    const Diagnosis found = *firstRule(kDescriptionRules, line);
    if (found.cause->id == "description-damaged") {
        const auto body = log.lastAfter("Orvane download info is ");
        const std::size_t start = body ? body->find_first_not_of(" \t\r\n") : std::string_view::npos;
        if (start != std::string_view::npos && (*body)[start] == '<') {
            return shownBy("page-instead-of-description", line);
        }
    }
    return found;
}

bool isDigestOfNothing(std::string_view digest) {
    return digest == "d41d8cd98f00b204e9800998ecf8427e" ||
           digest == "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
}

bool sameButForCapitals(std::string_view lower, std::string_view text) {
    return std::ranges::equal(lower, text, [](char left, char right) {
        return left == (right >= 'A' && right <= 'Z' ? static_cast<char>(right - 'A' + 'a') : right);
    });
}

/// `line` compares the digests of a finished download.
Diagnosis digestsDiffer(const RunLog& log, LogLine line) {
    static constexpr std::string_view kLocal = " orvane local checksum is ";
    static constexpr std::string_view kRemote = ", remote checksum is";
    const std::size_t start = line.find(kLocal) + kLocal.size();
    const std::size_t end = std::min(line.find(kRemote, start), line.size());
    const std::string_view local = line.substr(start, end - start);
    std::string described(line.substr(std::min(end + kRemote.size(), line.size())));
    // The line of a plain download shows the encrypted file's digest, not the one compared.
    const auto description = descriptionIn(log);
    if (line.starts_with("decrypted") && description) {
        described = description->checksum;
    }
    if (local.empty()) {
        return shownBy("digest-unsupported", line);
    }
    if (described.empty()) {
        return shownBy("digest-missing", line);
    }
    if (sameButForCapitals(local, described)) {
        return shownBy("digest-in-capitals", line);
    }
    return shownBy(isDigestOfNothing(local) ? "download-empty" : "download-differs", line);
}

bool isOlder(const MajorVersions& versions) {
    const auto number = [](std::string_view text) -> std::optional<std::uint64_t> {
        std::uint64_t value = 0;
        const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
        return failure == std::errc() && end == text.data() + text.size() ? std::optional(value)
                                                                          : std::nullopt;
    };
    const auto own = number(versions.bootstrapper);
    const auto engine = number(versions.engine);
    return own && engine && *own < *engine;
}

/// The bootstrapper gave up on what is published; `line` is the log's last one.
std::optional<Diagnosis> givenUp(const RunLog& log, LogLine line) {
    if (line == "process is uninstallation, but orvane does not exist on the machine") {
        return shownBy("nothing-to-uninstall", line);
    }
    if (line.starts_with("Encryption algorithm ") && line.ends_with(" is unsupported")) {
        return shownBy("cipher-unsupported", line);
    }
    const auto versions = majorVersionsIn(log);
    if (line.starts_with("bootstrapper major version is ") && versions &&
        versions->bootstrapper != versions->engine) {
        return shownBy(isOlder(*versions) ? "bootstrapper-too-old" : "publication-too-old", line);
    }
    return std::nullopt;
}

/// No line says why the run ended: the last one tells how far it came.
Diagnosis endedAt(LogLine line) {
    const auto begins = [line](std::string_view prefix) { return line.starts_with(prefix); };
    if (begins(kLaunch)) {
        return shownBy("engine-took-over", line);
    }
    if (begins("User didn't want to start")) {
        return shownBy("uninstallation-declined", line);
    }
    if (begins("Checking preferred languages") || begins("Found ") ||
        begins("Initializing orvane download") || begins("Orvane path is ") ||
        begins("Orvane download info is ")) {
        return shownBy("ended-at-start", line);
    }
    if (begins("Spawning orvane with args --version")) {
        return shownBy("ended-asking-version", line);
    }
    if (begins("Downloading latest orvane")) {
        return shownBy("ended-downloading", line);
    }
    if (begins("Orvane is encrypted, decrypting it")) {
        return shownBy("ended-decrypting", line);
    }
    static constexpr std::array<std::string_view, 13> kChecks{"Checking if ",
                                                              "bootstrapper major version is ",
                                                              "decrypted orvane local checksum is ",
                                                              "encrypted orvane local checksum is ",
                                                              "remote version is ",
                                                              "Unable to retrieve file version: ",
                                                              kDownloaded,
                                                              "Orvane is not encrypted",
                                                              "Orvane decrypted",
                                                              "Using existing orvane",
                                                              "process is uninstallation and",
                                                              kFallback,
                                                              kNoDescription};
    return shownBy(std::ranges::any_of(kChecks, begins) ? "ended-checking" : "unrecognised", line);
}

/// The log less the line that says that the report was not delivered.
std::span<const LogLine> linesOfTheRun(const RunLog& log) {
    std::span<const LogLine> lines = log.lines();
    while (!lines.empty() && lines.back().starts_with("cannot send crash report to orvane server: ")) {
        lines = lines.first(lines.size() - 1);
    }
    return lines;
}

} // namespace

Diagnosis diagnose(const RunLog& log, LogSource source) {
    const std::span<const LogLine> lines = linesOfTheRun(log);
    if (lines.empty()) {
        return shownBy("log-empty", {});
    }
    // The first such line counts: what a run still does behind its fatal alert may fail, too.
    for (const LogLine line : lines) {
        if (const auto fatal = fatalLine(log, line)) {
            return *fatal;
        }
    }
    if (log.isCutOff()) {
        return shownBy("log-cut-off", {});
    }
    const LogLine last = lines.back();
    if (last == kFallback) {
        return noDescription(log);
    }
    const bool comparesDigests = holds(last, "crypted orvane local checksum is ");
    if (comparesDigests && std::ranges::find(lines, kDownloaded) != lines.end()) {
        return digestsDiffer(log, last);
    }
    if (const auto reason = givenUp(log, last)) {
        return *reason;
    }
    const Diagnosis end = endedAt(last);
    if (source == LogSource::file || end.cause->id == "unrecognised") {
        return end;
    }
    // Only a fatal error sends a report, and the engine's own fatal errors leave no line.
    return shownBy(end.cause->id == "engine-took-over" ? "engine-message" : "log-cut-off", last);
}

} // namespace orvane::tools
