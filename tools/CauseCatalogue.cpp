#include "tools/CauseCatalogue.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace orvane::tools {
namespace {

constexpr std::array kSights{
    SightTexts{Sight::noConnection, "No network connection (text 4)", "Aucune connexion réseau disponible.",
               "Keine Internet Verbindung"},
    SightTexts{Sight::firewall, "A firewall probably blocks the download (text 5)",
               "Un pare-feu bloque probablement le téléchargement",
               "Ein Firewall blockiert vermutlich den Download"},
    SightTexts{Sight::installerTooOld, "The installer is too old (text 9)", "Cet installeur est trop ancien.",
               "Dieses Installationsprogramm ist zu alt."},
    SightTexts{Sight::failed, "The installation or uninstallation failed (texts 15 and 16)",
               "L'installation a échoué / La désinstallation a échoué",
               "Die Installation ist fehlgeschlagen. / Die Desinstallation ist fehlgeschlagen."},
    SightTexts{Sight::engineMessage, "Another text, which is the engine's own", "", ""},
    SightTexts{Sight::windowDisappeared, "The window disappeared without an alert", "", ""},
    SightTexts{Sight::noAlert, "No alert: the window waits, or the user ended the run", "", ""},
};

constexpr std::array kCauses{
    // Text 4: the reason is in an "Unable to download orvane …" line.
    Cause{"offline", Sight::noConnection, "`NSURLErrorDomain Code=-1009`", "The machine has no network.",
          "Connect the machine to a network and start again."},
    Cause{
        "name-not-resolved", Sight::noConnection,
        "`Could not resolve host: …`; `NSURLErrorDomain Code=-1003`",
        "The vendor's host name is not resolved: there is no network, or the name server does not answer.",
        "Open the vendor's web site on the machine. If no site opens, mend the network; if others open, let "
        "the administrator allow the vendor's names."},
    Cause{
        "connection-refused", Sight::noConnection, "`Failed to connect to …`; `NSURLErrorDomain Code=-1004`",
        "Nothing answers at the address and port that the line names: a firewall, a server that is down, or "
        "a proxy that is set but not there.",
        "Compare the address with the vendor's hosts. If it is another one, correct the proxy "
        "(`https_proxy`); otherwise let the administrator open port 443, or look at the server."},
    Cause{"proxy-refused", Sight::noConnection,
          "`CONNECT tunnel failed, response …`; `Could not resolve proxy: …`",
          "The proxy of the environment refuses: 407 asks for a password, 403 forbids the host.",
          "Set `https_proxy` with user and password, or let the administrator exempt the vendor's hosts "
          "(`no_proxy`)."},
    Cause{"no-answer-in-time", Sight::noConnection,
          "`Request timeout`; `Unable to download orvane file description: …` with `timed out` or "
          "`NSURLErrorDomain Code=-1001`",
          "The API host did not answer within 15 seconds.",
          "Start again. If it recurs, look at the API host's load, and at firewalls that drop packets."},
    Cause{"download-stalled", Sight::noConnection, "`Unable to download orvane: …` with `timed out`",
          "The download was silent for 30 seconds.",
          "Start again, on another network if it recurs; firewalls that inspect downloads hold them back."},
    Cause{"connection-broken", Sight::noConnection,
          "`transfer closed with …`, `Recv failure`, `Empty reply`, `Connection died`, `unexpected eof`; "
          "`NSURLErrorDomain Code=-1005`",
          "The connection broke before everything had arrived.",
          "Start again; use a cable instead of Wi-Fi."},
    Cause{
        "certificate-expired", Sight::noConnection,
        "`certificate has expired`, `certificate is not yet valid`; `NSURLErrorDomain Code=-1201` or `-1204`",
        "The certificate is not valid today: it has expired, or the machine's clock is wrong.",
        "Correct date and time of the machine. If they are right, renew the server's certificate."},
    Cause{
        "certificate-of-another-host", Sight::noConnection,
        "`no alternative certificate subject name matches …`",
        "Another server answers under the vendor's name.",
        "Look for a captive portal or a filter on the network; check the certificate's names on the server."},
    Cause{
        "certificate-not-trusted", Sight::noConnection,
        "`SSL certificate problem: …` otherwise; `NSURLErrorDomain Code=-1202` or `-1203`",
        "The certificate is not trusted: often a company's proxy or antivirus inspects connections.",
        "Let the administrator exempt the vendor's hosts from inspection, or install the company's authority "
        "on the machine."},
    Cause{"secure-connection-failed", Sight::noConnection,
          "`SSL connect error`, `SSL routines`, `wrong version number`; `NSURLErrorDomain Code=-1200`",
          "No secure connection was made: the other side speaks no TLS 1.2, or is no HTTPS server.",
          "Look for a proxy or portal in between; check the server with `orvane-publish verify`."},
    Cause{"not-https", Sight::noConnection, "`it does not begin with https:`",
          "The publication's `URL`, or a redirect, leads away from HTTPS.",
          "Publish an HTTPS address; check with `orvane-publish verify`. A portal may redirect, too."},
    Cause{"redirect-loop", Sight::noConnection,
          "`Maximum (20) redirects followed`; `NSURLErrorDomain Code=-1007`",
          "The server redirects in circles.", "Correct the redirects of the host that the line names."},
    Cause{"answer-not-http", Sight::noConnection,
          "`HTTP/0.9`, `Weird server reply`, `content encoding`, `content unencoding`, `chunk`, "
          "`Invalid Content-Length`, `response headers`, `Out of memory`",
          "The answer does not follow HTTP: a broken server or a filter in between.",
          "Fetch the address on the same network with a browser and see who answers."},
    Cause{"answer-too-large", Sight::noConnection, "`The answer is larger than 64 MiB`",
          "The API host, or another server in its place, answered with more than 64 MiB.",
          "Check what the API host serves with `orvane-publish verify`; look for a filter on the network."},
    Cause{
        "page-instead-of-description", Sight::noConnection,
        "`Orvane download info is <…`, then `The document is not valid JSON: …`",
        "A web page arrived instead of the description: a portal's log-in, a filter's notice, or a server's "
        "error page.",
        "Read the page in the log: it names who sent it. Log in to the network, allow the host, or repair "
        "the "
        "server."},
    Cause{"description-damaged", Sight::noConnection,
          "`The document is not valid JSON: …`, `The document is not a JSON object`",
          "The description arrived damaged or empty.",
          "Start again. If it recurs, check the publication with `orvane-publish verify`."},
    Cause{"description-incomplete", Sight::noConnection, "`The key … is missing`, `The value of … is not …`",
          "The published description is wrong.",
          "Publish again with `orvane-publish`, then check with `orvane-publish verify`."},
    Cause{"description-not-fetched", Sight::noConnection,
          "`Unable to download orvane file description: …` with any other reason",
          "The description could not be fetched for the reason in the line. macOS may word it in the user's "
          "language; domain and code are in `Error Domain=… Code=…`.",
          "Look up domain and code, check the network, start again."},
    Cause{"transfer-failed", Sight::noConnection, "`Unable to download orvane: …` with any other reason",
          "The transfer failed for the reason in the line. macOS words it in the user's language.",
          "Have the line translated if need be; check the network, start again."},

    // Text 5: "Orvane download finished", and then two digests that differ.
    Cause{"digest-unsupported", Sight::firewall,
          "after `Orvane download finished`: `local checksum is ,`, the local digest being empty",
          "The publication's `ChecksumAlgorithm` is neither `md5` nor `sha256`: no download can match.",
          "Publish again with `orvane-publish`."},
    Cause{"digest-in-capitals", Sight::firewall,
          "after `Orvane download finished`: both digests are the same but for capital letters",
          "The publication's digest has capital letters: no download can match.",
          "Publish again with `orvane-publish`."},
    Cause{"digest-missing", Sight::firewall,
          "after `Orvane download finished`: the description's `Checksum` (with a cipher, "
          "`EncryptedFileChecksum`) is empty",
          "The publication has no digest: no download can match.", "Publish again with `orvane-publish`."},
    Cause{"download-empty", Sight::firewall,
          "after `Orvane download finished`: `local checksum is e3b0c442…` (sha256) or `d41d8cd9…` (md5)",
          "Nothing was stored: the server sent an empty file, or the disk is full.",
          "Make room on the disk that holds `/opt`. If there is room, check the publication with "
          "`orvane-publish verify`. Then delete `/opt/Varlen/orvane/varlen-setup`."},
    Cause{"download-differs", Sight::firewall,
          "after `Orvane download finished`: the digests differ otherwise",
          "Something else arrived: a blocking or error page, a cut or changed file, less than the whole for "
          "want "
          "of room, or a publication that does not fit together.",
          "If many users have it, run `orvane-publish verify`. Otherwise look into the downloaded file in "
          "`/opt/Varlen/orvane` (a page names its sender) and check free space. Then delete the file."},

    // Text 9.
    Cause{"bootstrapper-too-old", Sight::installerTooOld,
          "`bootstrapper major version is …`, smaller than the engine's",
          "The bootstrapper is older than the published engine's major version.",
          "Give the user the current bootstrapper."},
    Cause{"publication-too-old", Sight::installerTooOld,
          "`bootstrapper major version is …`, not smaller than the engine's and not the same",
          "The published engine is of an older or differently written major version than the bootstrapper.",
          "Publish an engine of the bootstrapper's major version; `orvane-publish verify` checks."},
    Cause{"cipher-unsupported", Sight::installerTooOld, "`Encryption algorithm … is unsupported`",
          "The description names a cipher that this bootstrapper does not know (`xor` and `pkg` in small "
          "letters are known).",
          "Check the publication with `orvane-publish verify`; otherwise give the user the current "
          "bootstrapper."},
    Cause{"nothing-to-uninstall", Sight::installerTooOld,
          "`process is uninstallation, but orvane does not exist on the machine`",
          "There is no engine to uninstall with, and the published one does not fit this bootstrapper.",
          "Give the user the current bootstrapper, install with it, then uninstall."},

    // Texts 15 and 16.
    Cause{"folder-not-permitted", Sight::failed,
          "`Unable to create orvane directory: …` with `EACCES` or `EPERM`",
          "The user may not make `/opt/Varlen/orvane`.",
          "Start from the menu, or with `pkexec`, as an administrator."},
    Cause{"folder-blocked", Sight::failed,
          "`Unable to create orvane directory: …` with `ENOTDIR` or `EEXIST`",
          "A file is where a folder of `/opt/Varlen/orvane` should be.",
          "Remove the file that the line names."},
    Cause{"folder-not-made", Sight::failed,
          "`Unable to create orvane directory: …` with another reason, such as `EROFS` or `ENOSPC`",
          "`/opt/Varlen/orvane` could not be made: the disk is read-only or full.",
          "Make `/opt` writable (`mount`), or make room (`df /opt`)."},
    Cause{"download-not-writable", Sight::failed,
          "`Unable to download orvane: …` with `OrvaneBootstrap.DownloadError`",
          "The file for the download cannot be opened for writing: an older engine still runs, rights are "
          "missing, the disk is read-only, or a folder is in its place.",
          "`pgrep -f varlen-setup`: let it end. Then `ls -l /opt/Varlen/orvane`; start as an administrator."},
    Cause{"engine-is-a-folder", Sight::failed, "`Unable to compute file checksum: …` with `EISDIR`",
          "A folder has the engine's or the download's name. The alert is gone at once.",
          "Remove the folder that the line names."},
    Cause{"engine-not-readable", Sight::failed, "`Unable to compute file checksum: …` otherwise",
          "The engine's file exists and cannot be read.",
          "Start as an administrator, or `chmod 755 /opt/Varlen/orvane/varlen-setup`."},
    Cause{"key-unsuitable", Sight::failed, "`Unable to decrypt orvane: code 1`, `2` or `3` with `xor`",
          "The published `Checksum` cannot decrypt the download: 1 odd length, 2 longer than the file, 3 not "
          "hexadecimal.",
          "Publish again with `orvane-publish`."},
    Cause{"package-not-installed", Sight::failed, "`Unable to decrypt orvane: code …` with `pkg`",
          "The system's `installer` refused the package with this exit status; 127: the system has no such "
          "command.",
          "Read the installer's log (`/var/log/install.log` on macOS). Publish `pkg` for macOS alone."},
    Cause{"engine-in-use", Sight::failed, "`Unable to decrypt orvane: …` with `ETXTBSY`",
          "An older engine still runs, so that its file cannot be replaced.",
          "`pgrep -f varlen-setup`: let it end, or end it, and start again."},
    Cause{"disk-full", Sight::failed, "`Unable to decrypt orvane: …` with `ENOSPC` or `EDQUOT`",
          "There is no room for the decrypted engine.",
          "Make room on the disk that holds `/opt`, start again."},
    Cause{"engine-not-replaceable", Sight::failed,
          "`Unable to decrypt orvane: …` with `EACCES`, `EPERM`, `EROFS` or `EISDIR`",
          "The engine's file cannot be written: rights, a read-only disk, or a folder in its place.",
          "`ls -l /opt/Varlen/orvane`; remove what is in the way and start as an administrator."},
    Cause{"not-decrypted", Sight::failed, "`Unable to decrypt orvane: …` with another reason",
          "The download could not be decrypted for the reason in the line.",
          "Act on the reason; delete the folder `/opt/Varlen/orvane` and start again."},
    Cause{"engine-not-a-program", Sight::failed, "`Cannot spawn orvane: …` with `ENOEXEC` or `EBADARCH`",
          "The engine is not a program of this machine: a wrong publication, or another architecture.",
          "Check the publication with `orvane-publish verify`; delete `/opt/Varlen/orvane/varlen-setup`."},
    Cause{
        "engine-missing", Sight::failed, "`Cannot spawn orvane: …` with `ENOENT`",
        "There is no engine to start: the publication's `Checksum` is empty, a package installed nothing, or "
        "the engine's interpreter is missing.",
        "Check the publication with `orvane-publish verify`, and that the package installs the engine."},
    Cause{"engine-not-permitted", Sight::failed, "`Cannot spawn orvane: …` with `EACCES`, `EPERM` or `EROFS`",
          "The engine may not be made executable or started: rights, a read-only disk, `noexec`, or a "
          "security policy.",
          "Start as an administrator; `mount` shows whether `/opt` has `noexec`."},
    Cause{
        "engine-not-started", Sight::failed, "`Cannot spawn orvane: …` with another reason",
        "The engine could not be started for the reason in the line. macOS words it in the user's language.",
        "Delete `/opt/Varlen/orvane/varlen-setup` and start again; check with `orvane-publish verify`."},

    // The engine's own text.
    Cause{"engine-message", Sight::engineMessage,
          "a crash report whose log ends with `Spawning orvane with args --pid …`",
          "The engine ended the run with a message of its own, which is not in the log.",
          "Ask the user for the alert's text, and the engine's authors for its meaning."},

    // The window disappeared. The reason is the log's last line, and on standard error.
    Cause{"engine-does-not-run", Sight::windowDisappeared,
          "`the engine could not be asked for its version: …`",
          "The file with the engine's name is not a program: a page, an empty or cut file, or one of another "
          "machine. Every run ends so until the file is gone.",
          "Delete `/opt/Varlen/orvane/varlen-setup` and start again."},
    Cause{"publication-address", Sight::windowDisappeared, "`… is not a URL: …`",
          "The publication's `URL` is not a valid address, for example because it has a blank.",
          "Publish again with `orvane-publish`."},
    Cause{"publication-version", Sight::windowDisappeared, "`a version has no first component: …`",
          "The publication's `Version` is empty or has only points.", "Publish again with `orvane-publish`."},
    Cause{"publication-key", Sight::windowDisappeared, "`… with an empty key`",
          "The publication's `Checksum`, which is the key, is empty.",
          "Publish again with `orvane-publish`."},
    Cause{"engine-not-written", Sight::windowDisappeared, "`OrvaneBootstrap/crypto line 181: …`",
          "The decrypted engine could not be written; the reason follows, often `ENOSPC`, a full disk.",
          "Make room on the disk that holds `/opt`, delete the folder `/opt/Varlen/orvane`, start again."},
    Cause{"engine-message-invalid", Sight::windowDisappeared,
          "`an engine message is not valid UTF-8`, `a restart question …`",
          "The engine sent a message that the bootstrapper cannot accept.",
          "Report it to the engine's authors; docs/engine-guide.md describes messages."},
    Cause{"language-setting", Sight::windowDisappeared, "`a language tag consists of hyphens only`",
          "`LANGUAGE`, or the system's list of languages, has an entry of hyphens only.",
          "Correct the user's language settings."},
    Cause{"out-of-resources", Sight::windowDisappeared,
          "`no background thread can be started: …`, `a command could not be started: …`",
          "The machine can start no further thread or program.", "Restart the machine."},
    Cause{"program-stopped", Sight::windowDisappeared,
          "any other `programming error: …`, `invalid input: …` or `unexpected error: …`",
          "The program stopped at something that must not happen.",
          "Send the log to the bootstrapper's developers."},

    // No alert, so a log that the user sent, not a report.
    Cause{"engine-took-over", Sight::noAlert,
          "a user's log that ends with `Spawning orvane with args --pid …`",
          "The bootstrapper did its part and started the engine; the log ends there in good runs, too.",
          "If the window waits: look whether `varlen-setup` still runs, then at the engine's own log."},
    Cause{"ended-at-start", Sight::noAlert, "the log ends at `Orvane path is …` or before",
          "The run was ended before the description had arrived; or the window disappeared because the API "
          "host's "
          "answer was not text (standard error says `the file description is not valid UTF-8`).",
          "Start again in a terminal, wait 15 seconds, read standard error; check with `orvane-publish "
          "verify`."},
    Cause{
        "ended-asking-version", Sight::noAlert, "the log ends at `Spawning orvane with args --version`",
        "The engine on the machine did not answer `--version`, or the window disappeared because the file is "
        "not a program.",
        "End `varlen-setup`, delete `/opt/Varlen/orvane/varlen-setup`, start again."},
    Cause{"ended-downloading", Sight::noAlert, "the log ends at `Downloading latest orvane`",
          "The run was ended during the download.",
          "Start again; if the window disappears at once, delete "
          "`/opt/Varlen/orvane/varlen-setup`."},
    Cause{"ended-checking", Sight::noAlert,
          "the log ends at another line of the checks or after the download",
          "The run was ended while it checked the engine or the download.", "Start again."},
    Cause{"ended-decrypting", Sight::noAlert, "the log ends at `Orvane is encrypted, decrypting it`",
          "The run was ended while the engine was decrypted or the package installed.",
          "Delete the folder `/opt/Varlen/orvane`, start again."},
    Cause{"uninstallation-declined", Sight::noAlert, "`User didn't want to start the procedure`",
          "The user answered No to the question whether to uninstall.", "Nothing: no fault."},

    // What cannot be told from the log.
    Cause{"log-cut-off", Sight::noAlert,
          "the log ends in the middle of a line; or it is a report's and ends with no failure",
          "The log stops before the failure: the disk with `/Library` is full, or a second run of the same "
          "second "
          "replaced the log.",
          "Make room, start again once; if it fails, ask for the new log."},
    Cause{"log-empty", Sight::noAlert, "the log has no line",
          "The log was empty: the disk is full, or the file was replaced.",
          "Check free space, start again; if it fails, ask for the new log."},
    Cause{"unrecognised", Sight::noAlert, "none of these",
          "The log does not show a cause that this version of `orvane-reports` knows.",
          "Read the log with `orvane-reports show`; send it to the bootstrapper's developers."},
};

} // namespace

std::span<const SightTexts> sights() { return kSights; }

const SightTexts& textsOf(Sight sight) { return *std::ranges::find(kSights, sight, &SightTexts::sight); }

std::span<const Cause> causes() { return kCauses; }

const Cause& causeNamed(std::string_view id) {
    const auto found = std::ranges::find(kCauses, id, &Cause::id);
    if (found == kCauses.end()) {
        throw std::logic_error("no cause \"" + std::string(id) + "\" in the catalogue");
    }
    return *found;
}

} // namespace orvane::tools
