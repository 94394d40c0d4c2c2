#include "demo/RequestLog.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace orvane::demo {

RequestLog::RequestLog(std::filesystem::path file) : file_(std::move(file)) {
    std::filesystem::remove(file_);
}

void RequestLog::add(const LoggedRequest& request) {
    nlohmann::ordered_json line{{"method", request.method}, {"target", request.target}};
    line["headers"] = nlohmann::ordered_json::object();
    for (const auto& [name, value] : request.headers) {
        line["headers"][name] = value;
    }
    if (!request.reason.empty()) {
        line["reason"] = request.reason;
    }
    const std::string text = line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
    const std::lock_guard lock(mutex_);
    std::ofstream(file_, std::ios::binary | std::ios::app) << text;
}

} // namespace orvane::demo
