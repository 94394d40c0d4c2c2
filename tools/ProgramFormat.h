#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

/// The systems that bootstrappers exist for: "linux-amd64", "linux-arm64" and "macos".
const std::vector<std::string>& knownSystems();

/// The system that this tool runs on.
std::string thisSystem();

/// What kind of executable a file is.
struct Program {
    std::string kind;                 ///< for people: "a Linux program for arm64"
    std::vector<std::string> systems; ///< which of the known systems can run it

    bool runsOn(const std::string& system) const;
};

/// Recognises ELF and Mach-O executables by their headers, and scripts by "#!"; every system may have a
/// script's interpreter. Nothing for any other file. Throws `platform::Error` when the file cannot be read.
std::optional<Program> programIn(const std::filesystem::path& file);

/// Whether a file begins like an installer package of macOS.
bool isInstallerPackage(const std::filesystem::path& file);

} // namespace orvane::tools
