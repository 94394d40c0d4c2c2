#include "platform/UrlTransfer_linux.h"

#include "platform/PlainHttp.h"
#include "platform/ProgrammingError.h"
#include "platform/TrustedAuthorities_linux.h"

#include <algorithm>
#include <charconv>
#include <openssl/ssl.h>
#include <strings.h>
#include <utility>

namespace orvane::platform {

namespace {

constexpr long kMostRedirects = 20;
constexpr std::size_t kMostHeaderBytes = std::size_t{512} << 10;
constexpr long kReceiveBufferSize = 512L << 10; // the largest the library admits

using UrlParts = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

UrlParts partsOf(const char* url) {
    UrlParts parts(curl_url(), &curl_url_cleanup);
    if (url == nullptr ||
        curl_url_set(parts.get(), CURLUPART_URL, url, CURLU_NON_SUPPORT_SCHEME) != CURLUE_OK) {
        parts.reset();
    }
    return parts;
}

/// Empty where there is no such part.
std::string part(const UrlParts& parts, CURLUPart which) {
    char* text = nullptr;
    if (!parts || curl_url_get(parts.get(), which, &text, 0) != CURLUE_OK) {
        return {};
    }
    const std::unique_ptr<char, decltype(&curl_free)> owned(text, &curl_free);
    return text;
}

/// A delegate has nobody above it to whom an exception could go.
template <typename Call>
auto callDelegate(Call call) {
    try {
        return call();
    } catch (...) {
        programmingError("a session's delegate let an exception out");
    }
}

/// The library writes session keys to the file that SSLKEYLOGFILE names; nobody may read along here.
CURLcode keepKeysSecret(CURL* /*easy*/, void* sslContext, void* /*unused*/) {
    SSL_CTX_set_keylog_callback(static_cast<SSL_CTX*>(sslContext), nullptr);
    return CURLE_OK;
}

std::string errorSentence(CURLcode result, bool cancelled, const char* libraryText) {
    if (cancelled) {
        return "The request was cancelled";
    }
    if (result == CURLE_OPERATION_TIMEDOUT) {
        return "The request timed out";
    }
    return *libraryText != '\0' ? libraryText : curl_easy_strerror(result);
}

} // namespace

UrlTransfer::UrlTransfer(CURLM* multi, std::shared_ptr<UrlDataTask> task,
                         std::weak_ptr<UrlSessionDataDelegate> delegate)
    : multi_(multi), task_(std::move(task)), delegate_(std::move(delegate)), easy_(curl_easy_init()) {
    setUp();
}

UrlTransfer& UrlTransfer::of(CURL* easy) {
    void* transfer = nullptr;
    curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
    return *static_cast<UrlTransfer*>(transfer);
}

/// An option that could not be set must not silently leave a transfer less safe; it ends the transfer before
/// it begins.
template <typename Value>
void UrlTransfer::set(CURLoption option, Value value) {
    const CURLcode result = curl_easy_setopt(easy_.get(), option, value);
    if (setUpResult_ == CURLE_OK) {
        setUpResult_ = result;
    }
}

void UrlTransfer::setUp() {
    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_ERRORBUFFER, errorText_.data());
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // a name that is still being looked up does not hold up a transfer's end
    set(CURLOPT_BUFFERSIZE, kReceiveBufferSize);
    set(CURLOPT_HEADERFUNCTION, &UrlTransfer::onHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &UrlTransfer::onBody);
    set(CURLOPT_WRITEDATA, this);
    setUpSecurity();
    setUpRequest();
}

void UrlTransfer::setUpSecurity() {
    const char* const protocols = plainHttpPrefix().empty() ? "https" : "https,http";
    set(CURLOPT_PROTOCOLS_STR, protocols);
    set(CURLOPT_REDIR_PROTOCOLS_STR, protocols);
    set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    set(CURLOPT_SSL_VERIFYPEER, 1L);
    set(CURLOPT_SSL_VERIFYHOST, 2L);
    set(CURLOPT_SSL_CTX_FUNCTION, &keepKeysSecret);
    if (const std::string authorities = trustedAuthoritiesFile(); !authorities.empty()) {
        set(CURLOPT_CAINFO, authorities.c_str());
        set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
}

void UrlTransfer::setUpRequest() {
    const UrlRequest& request = task_->request();
    set(CURLOPT_URL, request.url.c_str());
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, kMostRedirects);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_ACCEPT_ENCODING, ""); // every coding that the library can decode
    // A host with several addresses gets its other ones tried within the limit.
    set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(request.timeoutInterval.count()));
    setUpMethodAndBody();
    for (auto [line, value] : request.httpHeaderFields) {
        line += value.empty() ? ";" : ": ";
        line += value;
        addHeaderField(line);
    }
    set(CURLOPT_HTTPHEADER, headerFields_.get());
}

void UrlTransfer::setUpMethodAndBody() {
    const UrlRequest& request = task_->request();
    std::string usualMethod = "GET";
    if (request.httpMethod == "HEAD") {
        usualMethod = "HEAD";
        set(CURLOPT_NOBODY, 1L);
    } else if (request.httpMethod == "POST" || !request.httpBody.empty()) {
        usualMethod = "POST";
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.httpBody.size()));
        set(CURLOPT_POSTFIELDS, request.httpBody.c_str());
        addHeaderField("Expect:"); // do not wait for a leave to send the body
    }
    if (request.httpMethod != usualMethod) {
        set(CURLOPT_CUSTOMREQUEST, request.httpMethod.c_str());
    }
}

void UrlTransfer::addHeaderField(const std::string& line) {
    curl_slist* longer = curl_slist_append(headerFields_.get(), line.c_str());
    if (longer == nullptr) {
        setUpResult_ = CURLE_OUT_OF_MEMORY;
        return;
    }
    static_cast<void>(headerFields_.release());
    headerFields_.reset(longer);
}

void UrlTransfer::obeyTask() {
    if (isComplete_) {
        return;
    }
    if (task_->isCancelled()) {
        complete(CURLE_ABORTED_BY_CALLBACK);
    } else if (task_->isSuspended()) {
        isHeldBack_ = true;
    } else if (!hasBegun_) {
        begin();
    } else if (isHeldBack_) {
        goOn();
    }
}

void UrlTransfer::begin() {
    hasBegun_ = true;
    isHeldBack_ = false;
    lastMovement_ = Clock::now();
    ownError_ = refusalOfTransfer(task_->request().url);
    if (ownError_) {
        complete(CURLE_UNSUPPORTED_PROTOCOL);
    } else if (setUpResult_ != CURLE_OK) {
        complete(setUpResult_);
    } else if (curl_multi_add_handle(multi_, easy_.get()) != CURLM_OK) {
        complete(CURLE_FAILED_INIT);
    }
}

/// The time for which the task was suspended does not count.
void UrlTransfer::goOn() {
    isHeldBack_ = false;
    lastMovement_ = Clock::now();
    curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
}

void UrlTransfer::watchProgress() {
    if (isComplete_) {
        return;
    }
    if (const curl_off_t moved = bytesMoved(); moved != bytesMoved_) {
        bytesMoved_ = moved;
        lastMovement_ = Clock::now();
    } else if (const auto limit = deadline(); limit && Clock::now() >= *limit) {
        complete(CURLE_OPERATION_TIMEDOUT);
    }
}

std::optional<UrlTransfer::Clock::time_point> UrlTransfer::deadline() const {
    if (!hasBegun_ || isHeldBack_) {
        return std::nullopt;
    }
    return lastMovement_ + task_->request().timeoutInterval;
}

curl_off_t UrlTransfer::bytesMoved() const {
    curl_off_t received = 0;
    curl_off_t sent = 0;
    long headers = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_DOWNLOAD_T, &received);
    curl_easy_getinfo(easy_.get(), CURLINFO_SIZE_UPLOAD_T, &sent);
    curl_easy_getinfo(easy_.get(), CURLINFO_HEADER_SIZE, &headers);
    return received + sent + headers;
}

void UrlTransfer::complete(CURLcode result) {
    isComplete_ = true;
    if (result == CURLE_OK) {
        ensureResponse();
    }
    const std::optional<Error> error = errorOf(result);
    curl_multi_remove_handle(multi_, easy_.get());
    if (const auto delegate = delegate_.lock()) {
        callDelegate([&] { delegate->didComplete(*task_, error); });
    }
}

std::size_t UrlTransfer::onHeader(char* data, std::size_t size, std::size_t count, void* transfer) {
    return static_cast<UrlTransfer*>(transfer)->headerArrived({data, size * count});
}

std::size_t UrlTransfer::onBody(char* data, std::size_t size, std::size_t count, void* transfer) {
    return static_cast<UrlTransfer*>(transfer)->bodyArrived(bytesOf({data, size * count}));
}

/// Called for the lines of trailers too.
std::size_t UrlTransfer::headerArrived(std::string_view line) {
    headerBytes_ += line.size();
    if (headerBytes_ > kMostHeaderBytes) {
        ownError_ =
            Error("OrvaneBootstrap", 431, "The answer's headers and trailers are larger than 512 KiB");
        return 0;
    }
    long status = 0;
    curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
    const bool isPreliminary = status < 200;
    const bool isEndOfHeaders = line == "\r\n" || line == "\n";
    if (!isEndOfHeaders || isPreliminary || hasResponse_) {
        return line.size();
    }
    const auto location = status >= 300 && status < 400 ? redirectLocation() : std::nullopt;
    if (location) {
        ownError_ = refusalOfTransfer(addressAt(*location));
    } else {
        deliverResponse();
    }
    return isRefused_ || ownError_ ? 0 : line.size();
}

/// The first that is not blank: the one that the library follows. Empty where all are blank: it follows none.
std::optional<std::string> UrlTransfer::redirectLocation() const {
    std::optional<std::string> location = responseHeader("Location");
    for (std::size_t index = 1; location && location->empty(); ++index) {
        const auto next = responseHeader("Location", index);
        if (!next) {
            break;
        }
        location = next;
    }
    return location;
}

/// `location` resolved against the current URL. A malformed one is left to the library, which reports it.
std::string UrlTransfer::addressAt(const std::string& location) const {
    const UrlParts parts = partsOf(effectiveUrl());
    curl_url_set(parts.get(), CURLUPART_URL, location.c_str(), CURLU_URLENCODE | CURLU_NON_SUPPORT_SCHEME);
    return part(parts, CURLUPART_URL);
}

void UrlTransfer::deliverResponse() {
    hasResponse_ = true;
    if (const auto delegate = delegate_.lock()) {
        const auto disposition =
            callDelegate([&] { return delegate->didReceiveResponse(*task_, expectedContentLength()); });
        isRefused_ = disposition == ResponseDisposition::cancel;
    }
}

/// An answer that looked like a redirect, but that the library did not follow, is the response after all.
void UrlTransfer::ensureResponse() {
    if (!hasResponse_) {
        deliverResponse();
    }
}

/// Without the blanks around it; the library leaves a line end in a blank value.
std::optional<std::string> UrlTransfer::responseHeader(const char* name, std::size_t index) const {
    curl_header* header = nullptr;
    constexpr int kLatestRequest = -1;
    if (curl_easy_header(easy_.get(), name, index, CURLH_HEADER, kLatestRequest, &header) != CURLHE_OK) {
        return std::nullopt;
    }
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const std::string_view value = header->value;
    const std::size_t first = std::min(value.find_first_not_of(blanks), value.size());
    return std::string(value.substr(first, value.find_last_not_of(blanks) + 1 - first));
}

std::int64_t UrlTransfer::expectedContentLength() const {
    const std::string coding = responseHeader("Content-Encoding").value_or("");
    const bool isCoded = !coding.empty() && ::strcasecmp(coding.c_str(), "identity") != 0;
    const std::string length = responseHeader("Content-Length").value_or("");
    std::int64_t value = -1;
    const auto [end, failure] = std::from_chars(length.data(), length.data() + length.size(), value);
    const bool isKnown = failure == std::errc() && value >= 0 && !responseHeader("Transfer-Encoding");
    return isKnown && !isCoded ? value : -1;
}

std::size_t UrlTransfer::bodyArrived(ByteView data) {
    if (task_->isCancelled()) {
        return CURL_WRITEFUNC_ERROR;
    }
    if (task_->isSuspended()) {
        isHeldBack_ = true;
        return CURL_WRITEFUNC_PAUSE;
    }
    ensureResponse();
    if (isRefused_) {
        return CURL_WRITEFUNC_ERROR;
    }
    if (const auto delegate = delegate_.lock()) {
        callDelegate([&] { delegate->didReceiveData(*task_, data); });
    }
    return data.size();
}

std::optional<Error> UrlTransfer::errorOf(CURLcode result) const {
    if (ownError_) {
        return ownError_;
    }
    const bool isCancelled = isRefused_ || task_->isCancelled();
    const CURLcode code = isCancelled ? CURLE_ABORTED_BY_CALLBACK : result;
    if (code == CURLE_OK) {
        return std::nullopt;
    }
    std::string description = errorSentence(code, isCancelled, errorText_.data());
    const std::string host = part(partsOf(effectiveUrl()), CURLUPART_HOST);
    if (!host.empty() && description.find(host) == std::string::npos) {
        description += " (" + host + ")";
    }
    return Error("libcurl", code, description);
}

/// The one last gone to.
const char* UrlTransfer::effectiveUrl() const {
    const char* url = nullptr;
    curl_easy_getinfo(easy_.get(), CURLINFO_EFFECTIVE_URL, &url);
    return url;
}

} // namespace orvane::platform
