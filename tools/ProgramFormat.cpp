#include "tools/ProgramFormat.h"

#include "platform/Files.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <sys/utsname.h>

namespace orvane::tools {
namespace {

using namespace std::string_view_literals;

constexpr auto kLinuxAmd64 = "linux-amd64";
constexpr auto kLinuxArm64 = "linux-arm64";
constexpr auto kMac = "macos";

constexpr std::size_t kHeaderSize = 4096;
constexpr std::size_t kMostArchitectures =
    16; // more is a Java class file, which begins like a universal program

std::string headerOf(const std::filesystem::path& file) {
    return std::string(textOf(platform::FileHandle::forReading(file).readUpToCount(kHeaderSize)));
}

std::uint32_t byteAt(std::string_view bytes, std::size_t position) {
    return position < bytes.size() ? static_cast<unsigned char>(bytes[position]) : 0U;
}

std::uint32_t littleEndian16(std::string_view bytes, std::size_t position) {
    return byteAt(bytes, position) | byteAt(bytes, position + 1) << 8U;
}

std::uint32_t littleEndian32(std::string_view bytes, std::size_t position) {
    return littleEndian16(bytes, position) | littleEndian16(bytes, position + 2) << 16U;
}

std::uint32_t bigEndian32(std::string_view bytes, std::size_t position) {
    return byteAt(bytes, position) << 24U | byteAt(bytes, position + 1) << 16U |
           byteAt(bytes, position + 2) << 8U | byteAt(bytes, position + 3);
}

/// elf(5): 64 bits, little-endian, an executable or a position-independent one.
std::optional<Program> elfProgram(std::string_view header) {
    constexpr std::uint32_t kExecutable = 2;
    constexpr std::uint32_t kPositionIndependent = 3;
    constexpr std::uint32_t kAmd64 = 62;
    constexpr std::uint32_t kArm64 = 183;
    const std::uint32_t type = littleEndian16(header, 16);
    if (!header.starts_with("\x7F"
                            "ELF\2\1"sv) ||
        (type != kExecutable && type != kPositionIndependent)) {
        return std::nullopt;
    }
    switch (littleEndian16(header, 18)) {
    case kAmd64:
        return Program{"a Linux program for amd64", {kLinuxAmd64}};
    case kArm64:
        return Program{"a Linux program for arm64", {kLinuxArm64}};
    default:
        return Program{"a program for another processor than amd64 and arm64", {}};
    }
}

std::string macArchitecture(std::uint32_t processor) {
    constexpr std::uint32_t kAmd64 = 0x01000007;
    constexpr std::uint32_t kArm64 = 0x0100000C;
    return processor == kAmd64 ? "x86_64" : processor == kArm64 ? "arm64" : "";
}

Program macProgram(const std::vector<std::string>& architectures) {
    std::string names;
    for (const std::string& name : architectures) {
        names += (names.empty() ? "" : " and ") + name;
    }
    if (names.empty()) {
        return {"a macOS program for neither x86_64 nor arm64", {}};
    }
    return {"a macOS program for " + names, {kMac}};
}

/// A Mach-O executable for one architecture, or a universal one for several.
std::optional<Program> machProgram(std::string_view header) {
    constexpr std::uint32_t kExecutable = 2;
    if (header.starts_with("\xCF\xFA\xED\xFE"sv) && littleEndian32(header, 12) == kExecutable) {
        const std::string name = macArchitecture(littleEndian32(header, 4));
        return macProgram(name.empty() ? std::vector<std::string>() : std::vector{name});
    }
    const bool wide = header.starts_with("\xCA\xFE\xBA\xBF"sv);
    const std::uint32_t count = bigEndian32(header, 4);
    if ((!wide && !header.starts_with("\xCA\xFE\xBA\xBE"sv)) || count == 0 || count > kMostArchitectures) {
        return std::nullopt;
    }
    std::vector<std::string> names;
    for (std::uint32_t index = 0; index < count; ++index) {
        const std::size_t entrySize = wide ? 32 : 20;
        if (const auto name = macArchitecture(bigEndian32(header, 8 + index * entrySize)); !name.empty()) {
            names.push_back(name);
        }
    }
    return macProgram(names);
}

} // namespace

const std::vector<std::string>& knownSystems() {
    static const std::vector<std::string> systems{kLinuxAmd64, kLinuxArm64, kMac};
    return systems;
}

std::string thisSystem() {
    utsname names{};
    ::uname(&names);
    if (names.sysname == "Darwin"sv) {
        return kMac;
    }
    return names.machine == "aarch64"sv ? kLinuxArm64 : kLinuxAmd64;
}

bool Program::runsOn(const std::string& system) const {
    return std::ranges::find(systems, system) != systems.end();
}

std::optional<Program> programIn(const std::filesystem::path& file) {
    const std::string header = headerOf(file);
    if (header.starts_with("#!")) {
        return Program{"a script", knownSystems()};
    }
    if (auto program = elfProgram(header)) {
        return program;
    }
    return machProgram(header);
}

bool isInstallerPackage(const std::filesystem::path& file) { return headerOf(file).starts_with("xar!"); }

} // namespace orvane::tools
