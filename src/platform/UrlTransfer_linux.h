#pragma once

#include "platform/Bytes.h"
#include "platform/UrlDataTask_linux.h"
#include "platform/UrlSession.h"

#include <array>
#include <chrono>
#include <curl/curl.h>
#include <memory>
#include <optional>
#include <string>

namespace orvane::platform {

/// One transfer as the client library carries it out, from its set-up to the task's completion. Lives on the
/// worker's thread, where it calls the delegate.
class UrlTransfer {
public:
    using Clock = std::chrono::steady_clock;

    UrlTransfer(CURLM* multi, std::shared_ptr<UrlDataTask> task,
                std::weak_ptr<UrlSessionDataDelegate> delegate);
    UrlTransfer(const UrlTransfer&) = delete;
    UrlTransfer& operator=(const UrlTransfer&) = delete;

    /// The transfer that `easy` belongs to.
    static UrlTransfer& of(CURL* easy);

    /// Begins, goes on or ends as the task says.
    void obeyTask();

    /// Notes whether bytes have moved; ends the transfer when none have for too long.
    void watchProgress();

    /// When `watchProgress` has to be called at the latest, if at all.
    std::optional<Clock::time_point> deadline() const;

    /// Tells the delegate that the task is over. Once.
    void complete(CURLcode result);

    bool isComplete() const { return isComplete_; }

private:
    template <typename Value>
    void set(CURLoption option, Value value);
    void setUp();
    void setUpSecurity();
    void setUpRequest();
    void setUpMethodAndBody();
    void addHeaderField(const std::string& line);
    void begin();
    void goOn();

    std::size_t headerArrived(std::string_view line);
    std::size_t bodyArrived(ByteView data);
    std::optional<std::string> redirectLocation() const;
    std::string addressAt(const std::string& location) const;
    void deliverResponse();
    void ensureResponse();
    std::optional<std::string> responseHeader(const char* name, std::size_t index = 0) const;
    std::int64_t expectedContentLength() const;
    curl_off_t bytesMoved() const;
    std::optional<Error> errorOf(CURLcode result) const;
    const char* effectiveUrl() const;

    static std::size_t onHeader(char* data, std::size_t size, std::size_t count, void* transfer);
    static std::size_t onBody(char* data, std::size_t size, std::size_t count, void* transfer);

    struct EasyDeleter {
        void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
    };
    struct ListDeleter {
        void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    };

    CURLM* const multi_;
    const std::shared_ptr<UrlDataTask> task_;
    const std::weak_ptr<UrlSessionDataDelegate> delegate_;

    std::unique_ptr<curl_slist, ListDeleter> headerFields_;
    std::array<char, CURL_ERROR_SIZE> errorText_{};
    const std::unique_ptr<CURL, EasyDeleter> easy_; ///< destroyed before what it points to

    CURLcode setUpResult_ = CURLE_OK;
    bool hasBegun_ = false;
    bool isHeldBack_ = false;     ///< its task was seen suspended since it last went on
    std::size_t headerBytes_ = 0; ///< trailers, and headers of redirects and preliminary responses, included
    bool hasResponse_ = false;
    bool isRefused_ = false;        ///< the delegate did not want the response
    std::optional<Error> ownError_; ///< why this class has ended the transfer
    bool isComplete_ = false;
    curl_off_t bytesMoved_ = 0;
    Clock::time_point lastMovement_ = Clock::now();
};

} // namespace orvane::platform
