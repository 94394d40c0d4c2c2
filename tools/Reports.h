#pragma once

#include "tools/Publisher.h"
#include "tools/Verifier.h"

#include <string>

namespace orvane::tools {

// What a command prints in the end, for people or, as one JSON object, for programs.

std::string publicationText(const Publication& publication, bool dryRun);
std::string publicationJson(const Publication& publication, bool dryRun);

std::string verificationText(const Verification& verification);
std::string verificationJson(const Verification& verification);

} // namespace orvane::tools
