#include "demo/VendorServer.h"

#include "demo/BodyStream.h"
#include "demo/CrashReportArchive.h"
#include "demo/Gzip.h"
#include "demo/RequestLog.h"
#include "demo/VendorFaults.h"

#include <algorithm>
#include <fstream>
#include <httplib.h>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace orvane::demo {
namespace {

using namespace std::chrono_literals;
using httplib::Request;
using httplib::Response;

constexpr char kDescriptionTarget[] = "/downloadinstaller?os=darwin&product=varlen";
constexpr char kReportPath[] = "/crashreport";
constexpr std::string_view kFilePrefix = "/varlen/setup/";

/// Longest wait for a client in the midst of a conversation. The library's five seconds cut off clients that
/// had to wait for a processor on a busy machine.
constexpr time_t kClientPatienceSeconds = 60;

constexpr char kJsonType[] = "application/json; charset=utf-8";
constexpr char kFileType[] = "application/octet-stream";
constexpr char kPageType[] = "text/html; charset=utf-8";

LoggedRequest logged(const Request& request, const std::string& reason = {}) {
    LoggedRequest entry{
        request.method, request.target, {request.headers.begin(), request.headers.end()}, reason};
    // The library passes the connection's addresses as if the client had sent them.
    for (const char* name : {"LOCAL_ADDR", "LOCAL_PORT", "REMOTE_ADDR", "REMOTE_PORT"}) {
        entry.headers.erase(name);
    }
    return entry;
}

/// What a path answers when nothing goes wrong.
struct Content {
    std::unique_ptr<std::istream> stream;
    std::string type;
};

Content textContent(const std::string& text, const std::string& type) {
    return {std::make_unique<std::istringstream>(text), type};
}

/// The library lets no such old protocol or digest through unless its level is lowered.
void speakOldTls(SSL_CTX* context) {
    SSL_CTX_set_security_level(context, 0);
    SSL_CTX_set_min_proto_version(context, TLS1_1_VERSION);
    SSL_CTX_set_max_proto_version(context, TLS1_1_VERSION);
}

std::string wholeText(std::istream& stream) { return {std::istreambuf_iterator<char>(stream), {}}; }

/// Whether a path below a folder leads out of it.
bool leavesFolder(const std::filesystem::path& path) {
    return path.is_absolute() || std::ranges::find(path, "..") != path.end();
}

} // namespace

class VendorServer::Service {
public:
    explicit Service(VendorOptions options);
    ~Service();

    int port() const { return port_; }
    std::string origin() const;

private:
    void setUpHandlers();
    void bind();
    void note(const Request& request, Response& response);
    void answerGet(const Request& request, Response& response);
    void answerReport(const Request& request, Response& response);
    void refuse(const Request& request, Response& response, int status, const std::string& reason);

    std::optional<VendorFault> faultFor(const std::string& path) const;
    Content contentFor(const Request& request) const;
    void send(Content content, const VendorFault& fault, Response& response);
    void sendRedirect(const VendorFault& fault, Response& response);
    void sendStream(const std::shared_ptr<BodyStream>& body, const std::string& type,
                    const VendorFault& fault, Response& response);

    VendorOptions options_;
    VendorCertificates certificates_;
    RequestLog requests_;
    RequestLog unexpected_;
    CrashReportArchive reports_;
    StopSignal stop_;
    httplib::SSLServer server_;
    int port_ = 0;
    std::thread thread_;
};

VendorServer::Service::Service(VendorOptions options)
    : options_(std::move(options)),
      certificates_(makeVendorCertificates(options_.folder, options_.hosts, options_.certificateFlaw)),
      requests_(options_.folder / "requests.log"),
      unexpected_(options_.folder / "unexpected.log"),
      reports_(options_.folder / "reports"),
      server_(certificates_.server.c_str(), certificates_.serverKey.c_str()) {
    std::filesystem::create_directories(options_.folder / "published");
    if (!server_.is_valid()) {
        throw std::runtime_error("cannot use the certificate just made");
    }
    if (options_.oldTls) {
        speakOldTls(server_.ssl_context());
    }
    setUpHandlers();
    bind();
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    // A server can only be stopped once it runs.
    while (!server_.is_running()) {
        std::this_thread::sleep_for(1ms);
    }
}

VendorServer::Service::~Service() {
    stop_.give();
    server_.stop();
    thread_.join();
}

std::string VendorServer::Service::origin() const {
    const bool isIpv6 = options_.address.find(':') != std::string::npos;
    return "https://" + (isIpv6 ? "[" + options_.address + "]" : "localhost") + ":" + std::to_string(port_);
}

void VendorServer::Service::setUpHandlers() {
    using HandlerResponse = httplib::Server::HandlerResponse;
    // One connection a request: a client that was cut off or waits never holds up another.
    server_.set_keep_alive_max_count(1);
    server_.set_keep_alive_timeout(kClientPatienceSeconds);
    server_.set_read_timeout(kClientPatienceSeconds);
    server_.set_write_timeout(kClientPatienceSeconds);
    // The library's own choice would let two servers share one port, and clients meet either.
    server_.set_socket_options([](int descriptor) {
        const int enabled = 1;
        setsockopt(descriptor, SOL_SOCKET, SO_REUSEADDR, &enabled, sizeof enabled);
    });
    server_.set_pre_routing_handler([this](const Request& request, Response& response) {
        note(request, response);
        if (request.method == "GET" || (request.method == "POST" && request.path == kReportPath)) {
            return HandlerResponse::Unhandled;
        }
        refuse(request, response, 404, "no such request");
        return HandlerResponse::Handled;
    });
    server_.Get(".*", [this](const Request& request, Response& response) { answerGet(request, response); });
    server_.Post(kReportPath,
                 [this](const Request& request, Response& response) { answerReport(request, response); });
    server_.set_error_handler([this](const Request& request, const Response& response) {
        // What could not even be parsed as a request was never routed and so bears no server's name.
        if (!response.has_header("Server")) {
            unexpected_.add(logged(request, "malformed, answered " + std::to_string(response.status)));
        }
    });
    server_.set_exception_handler(
        [this](const Request& request, Response& response, const std::exception_ptr& failure) {
            try {
                std::rethrow_exception(failure);
            } catch (const std::exception& error) {
                refuse(request, response, 500, error.what());
            }
        });
}

void VendorServer::Service::bind() {
    if (options_.port == 0) {
        port_ = server_.bind_to_any_port(options_.address);
    } else {
        port_ = server_.bind_to_port(options_.address, options_.port) ? options_.port : -1;
    }
    if (port_ < 0) {
        throw std::runtime_error("cannot listen on " + options_.address + " port " +
                                 std::to_string(options_.port));
    }
}

void VendorServer::Service::note(const Request& request, Response& response) {
    requests_.add(logged(request));
    response.set_header("Server", "VendorServer");
}

void VendorServer::Service::answerGet(const Request& request, Response& response) {
    const auto fault = faultFor(request.path);
    Content content = contentFor(request);
    if (content.stream == nullptr && !fault) {
        refuse(request, response, 404, "nothing is published there");
        return;
    }
    send(std::move(content), fault.value_or(VendorFault()), response);
}

void VendorServer::Service::answerReport(const Request& request, Response& response) {
    if (request.get_header_value("Content-Type") != "application/json") {
        refuse(request, response, 400, "the report is not declared as JSON");
        return;
    }
    try {
        reports_.add(request.body);
    } catch (const CrashReportError& error) {
        refuse(request, response, 400, error.what());
        return;
    }
    send(textContent("{}\n", kJsonType), faultFor(request.path).value_or(VendorFault()), response);
}

void VendorServer::Service::refuse(const Request& request, Response& response, int status,
                                   const std::string& reason) {
    unexpected_.add(logged(request, reason));
    response.status = status;
    response.set_content("<html><body><h1>" + std::to_string(status) + "</h1></body></html>\n", kPageType);
}

std::optional<VendorFault> VendorServer::Service::faultFor(const std::string& path) const {
    const auto faults = readVendorFaults(options_.folder / "faults.json");
    const auto found = faults.find(path);
    return found == faults.end() ? std::nullopt : std::optional(found->second);
}

Content VendorServer::Service::contentFor(const Request& request) const {
    std::string name;
    if (request.target == kDescriptionTarget) {
        name = "downloadinstaller.json";
    } else if (request.target.starts_with(kFilePrefix)) {
        name = request.target.substr(kFilePrefix.size());
    }
    const std::filesystem::path file = options_.folder / "published" / name;
    if (name.empty() || leavesFolder(name) || !std::filesystem::is_regular_file(file)) {
        return {};
    }
    const bool isDescription = request.target == kDescriptionTarget;
    return {std::make_unique<std::ifstream>(file, std::ios::binary), isDescription ? kJsonType : kFileType};
}

void VendorServer::Service::send(Content content, const VendorFault& fault, Response& response) {
    stop_.givenWithin(fault.delaySeconds);
    if (fault.hold) {
        waitForRelease(options_.folder / "release", stop_);
    }
    for (const auto& [name, value] : fault.headers) {
        response.set_header(name, value);
    }
    if (fault.redirect) {
        sendRedirect(fault, response);
        return;
    }
    if (fault.page || content.stream == nullptr) {
        content = textContent(fault.page.value_or(""), kPageType);
    }
    if (fault.gzip) {
        content = textContent(gzipped(wholeText(*content.stream)), content.type);
        response.set_header("Content-Encoding", "gzip");
    }
    response.status = fault.status.value_or(200);
    auto body =
        std::make_shared<BodyStream>(std::move(content.stream), fault, options_.folder / "release", stop_);
    sendStream(body, content.type, fault, response);
}

void VendorServer::Service::sendRedirect(const VendorFault& fault, Response& response) {
    response.status = fault.status.value_or(302);
    response.set_header("Location", *fault.redirect);
}

void VendorServer::Service::sendStream(const std::shared_ptr<BodyStream>& body, const std::string& type,
                                       const VendorFault& fault, Response& response) {
    // The content's end is a cut connection where more was announced, and the body's proper end elsewhere.
    const auto sendPiece = [body](httplib::DataSink& sink) {
        const auto piece = body->nextPiece();
        if (piece && piece->empty() && sink.done) {
            sink.done();
            return true;
        }
        return piece && !piece->empty() && sink.write(piece->data(), piece->size());
    };
    const auto sendFramedPiece = [sendPiece](std::size_t, httplib::DataSink& sink) {
        return sendPiece(sink);
    };
    if (fault.framing == BodyFraming::chunked) {
        response.set_chunked_content_provider(type, sendFramedPiece);
    } else if (fault.framing == BodyFraming::untilClose) {
        response.set_content_provider(type, sendFramedPiece);
    } else {
        const auto sendCountedPiece = [sendPiece](std::size_t, std::size_t, httplib::DataSink& sink) {
            return sendPiece(sink);
        };
        response.set_content_provider(fault.contentLength.value_or(body->size()), type, sendCountedPiece);
    }
}

VendorServer::VendorServer(VendorOptions options) : service_(std::make_unique<Service>(std::move(options))) {}

VendorServer::~VendorServer() = default;

int VendorServer::port() const { return service_->port(); }

std::string VendorServer::origin() const { return service_->origin(); }

} // namespace orvane::demo
