#include "tools/HttpProbe.h"

#include "platform/Error.h"
#include "platform/TrustedAuthorities_linux.h"

#include <algorithm>
#include <array>
#include <curl/curl.h>
#include <memory>
#include <string_view>

namespace orvane::tools {
namespace {

constexpr std::size_t kBeginning = 4096;
constexpr long kTimeoutSeconds = 30;

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
    });
    return text;
}

std::size_t onHeader(const char* data, std::size_t size, std::size_t count, void* context) {
    auto& answer = *static_cast<HttpAnswer*>(context);
    const std::string_view line(data, size * count);
    if (line.starts_with("HTTP/")) {
        answer.headers.clear(); // those of a redirect
    }
    if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
        std::string_view value = line.substr(colon + 1);
        const std::size_t first = value.find_first_not_of(" \t");
        value = first == std::string_view::npos
                    ? ""
                    : value.substr(first, value.find_last_not_of(" \t\r\n") - first + 1);
        answer.headers[lowerCase(std::string(line.substr(0, colon)))] = value;
    }
    return size * count;
}

std::size_t onBody(const char* data, std::size_t size, std::size_t count, void* context) {
    auto& beginning = static_cast<HttpAnswer*>(context)->beginning;
    beginning.append(data, std::min(size * count, kBeginning - beginning.size()));
    return beginning.size() < kBeginning ? size * count : CURL_WRITEFUNC_ERROR;
}

std::optional<std::chrono::system_clock::time_point> earliestEnd(CURL* easy) {
    curl_certinfo* chain = nullptr;
    std::optional<std::chrono::system_clock::time_point> earliest;
    if (curl_easy_getinfo(easy, CURLINFO_CERTINFO, &chain) != CURLE_OK || chain == nullptr) {
        return earliest;
    }
    for (int certificate = 0; certificate < chain->num_of_certs; ++certificate) {
        for (const curl_slist* field = chain->certinfo[certificate]; field != nullptr; field = field->next) {
            constexpr std::string_view kName = "Expire date:";
            const std::string_view text = field->data;
            if (text.starts_with(kName)) {
                const std::time_t end = curl_getdate(field->data + kName.size(), nullptr);
                const auto time = std::chrono::system_clock::from_time_t(end);
                earliest = std::min(earliest.value_or(time), time);
            }
        }
    }
    return earliest;
}

void setUp(CURL* easy, const std::string& url, HttpAnswer& answer, char* errorText) {
    curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorText);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "https");
    curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, "https");
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_TIMEOUT, kTimeoutSeconds);
    curl_easy_setopt(easy, CURLOPT_CERTINFO, 1L);
    curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &onHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &answer);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &answer);
    if (const std::string authorities = platform::trustedAuthoritiesFile(); !authorities.empty()) {
        curl_easy_setopt(easy, CURLOPT_CAINFO, authorities.c_str());
        curl_easy_setopt(easy, CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
}

} // namespace

std::optional<std::string> HttpAnswer::header(const std::string& name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? std::nullopt : std::optional(found->second);
}

HttpAnswer probe(const std::string& url) {
    const std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> easy(curl_easy_init(), &curl_easy_cleanup);
    HttpAnswer answer;
    std::array<char, CURL_ERROR_SIZE> errorText{};
    setUp(easy.get(), url, answer, errorText.data());
    const CURLcode result = curl_easy_perform(easy.get());
    const bool stopped = result == CURLE_WRITE_ERROR && answer.beginning.size() == kBeginning;
    if (result != CURLE_OK && !stopped) {
        const char* text = errorText.front() != '\0' ? errorText.data() : curl_easy_strerror(result);
        throw platform::Error("libcurl", static_cast<int>(result), text);
    }
    const char* last = nullptr;
    curl_easy_getinfo(easy.get(), CURLINFO_EFFECTIVE_URL, &last);
    answer.url = last;
    curl_easy_getinfo(easy.get(), CURLINFO_RESPONSE_CODE, &answer.status);
    answer.certificateEnd = earliestEnd(easy.get());
    return answer;
}

} // namespace orvane::tools
