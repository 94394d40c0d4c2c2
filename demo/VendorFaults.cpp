#include "demo/VendorFaults.h"

#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

namespace orvane::demo {
namespace {

using nlohmann::json;

BodyFraming framingNamed(const std::string& name) {
    static const std::map<std::string, BodyFraming> framings{
        {"content-length", BodyFraming::contentLength},
        {"chunked", BodyFraming::chunked},
        {"until-close", BodyFraming::untilClose},
    };
    const auto found = framings.find(name);
    if (found == framings.end()) {
        throw VendorFaultError("unknown framing \"" + name + "\"");
    }
    return found->second;
}

std::chrono::milliseconds millisecondsOf(const json& value) {
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(value.get<double>()));
}

void setFault(VendorFault& fault, const std::string& key, const json& value) {
    using Setter = std::function<void(VendorFault&, const json&)>;
    static const std::map<std::string, Setter> setters{
        {"status", [](auto& target, const json& from) { target.status = from.get<int>(); }},
        {"redirect", [](auto& target, const json& from) { target.redirect = from.get<std::string>(); }},
        {"page", [](auto& target, const json& from) { target.page = from.get<std::string>(); }},
        {"blanks", [](auto& target, const json& from) { target.blanks = from.get<std::uint64_t>(); }},
        {"headers", [](auto& target, const json& from) { from.get_to(target.headers); }},
        {"hold", [](auto& target, const json& from) { target.hold = from.get<bool>(); }},
        {"delaySeconds", [](auto& target, const json& from) { target.delaySeconds = millisecondsOf(from); }},
        {"framing",
         [](auto& target, const json& from) { target.framing = framingNamed(from.get<std::string>()); }},
        {"contentLength",
         [](auto& target, const json& from) { target.contentLength = from.get<std::uint64_t>(); }},
        {"gzip", [](auto& target, const json& from) { target.gzip = from.get<bool>(); }},
        {"dropAfterBytes",
         [](auto& target, const json& from) { target.dropAfterBytes = from.get<std::uint64_t>(); }},
        {"stallAfterBytes",
         [](auto& target, const json& from) { target.stallAfterBytes = from.get<std::uint64_t>(); }},
        {"bytesPerSecond",
         [](auto& target, const json& from) { target.bytesPerSecond = from.get<std::uint64_t>(); }},
    };
    const auto setter = setters.find(key);
    if (setter == setters.end()) {
        throw VendorFaultError("unknown fault \"" + key + "\"");
    }
    setter->second(fault, value);
}

} // namespace

std::map<std::string, VendorFault> readVendorFaults(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) {
        return {};
    }
    std::map<std::string, VendorFault> faults;
    try {
        const json document = json::parse(stream);
        for (const auto& [path, described] : document.get_ref<const json::object_t&>()) {
            VendorFault& fault = faults[path];
            for (const auto& [key, value] : described.get_ref<const json::object_t&>()) {
                setFault(fault, key, value);
            }
        }
    } catch (const json::exception& error) {
        throw VendorFaultError(file.string() + ": " + error.what());
    }
    return faults;
}

} // namespace orvane::demo
