#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

namespace orvane::demo {

/// How a body's end is told to the client.
enum class BodyFraming { contentLength, chunked, untilClose };

/// What goes otherwise than it should when one path is asked for. Each field is a key of the same name.
struct VendorFault {
    std::optional<int> status;
    std::optional<std::string> redirect;        ///< location; the status is then 302 unless given
    std::optional<std::string> page;            ///< an HTML text sent in place of the body
    std::uint64_t blanks = 0;                   ///< that many precede the body, made while it is sent
    std::map<std::string, std::string> headers; ///< sent besides

    bool hold = false;                                ///< nothing comes until the file "release" exists
    std::chrono::milliseconds delaySeconds{0};        ///< before the response begins; fractions count
    BodyFraming framing = BodyFraming::contentLength; ///< "content-length", "chunked" or "until-close"
    std::optional<std::uint64_t> contentLength;       ///< announced in place of the true one
    bool gzip = false;                                ///< the body is coded, whether the client asked or not

    std::optional<std::uint64_t> dropAfterBytes;  ///< of the body; then the connection is cut
    std::optional<std::uint64_t> stallAfterBytes; ///< then nothing comes until the file "release" exists
    std::optional<std::uint64_t> bytesPerSecond;
};

class VendorFaultError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads a JSON object that maps paths, without their query, to objects of faults. A missing file means no
/// faults. Throws `VendorFaultError` for a file that is not of that form, or names a fault that does not
/// exist.
std::map<std::string, VendorFault> readVendorFaults(const std::filesystem::path& file);

} // namespace orvane::demo
