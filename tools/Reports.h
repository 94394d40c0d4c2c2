#pragma once

#include "tools/PublicationFolder.h"
#include "tools/Publisher.h"
#include "tools/Verifier.h"

#include <string>
#include <vector>

namespace orvane::tools {

// What a command prints in the end, for people or, as one JSON object, for programs.

std::string publicationText(const Publication& publication, bool dryRun);
std::string publicationJson(const Publication& publication, bool dryRun);

std::string folderText(const std::vector<PublishedVersion>& versions);
std::string folderJson(const std::vector<PublishedVersion>& versions);

std::string verificationText(const Verification& verification);
std::string verificationJson(const Verification& verification);

} // namespace orvane::tools
