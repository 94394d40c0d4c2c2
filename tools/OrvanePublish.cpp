#include "tools/PublishError.h"
#include "tools/PublishOptions.h"
#include "tools/Publisher.h"

#include <algorithm>
#include <iostream>

namespace {

using namespace orvane::tools;

void report(const Publication& publication) {
    const auto& description = publication.description;
    std::cout << "engine digest (" << description.ChecksumAlgorithm << ")       " << description.Checksum
              << "\n"
              << "transferred digest (" << description.ChecksumAlgorithm << ")  "
              << description.EncryptedFileChecksum << "\n"
              << "wrote " << publication.engineFile.string() << "\n"
              << "wrote " << publication.descriptionFile.string() << "\n";
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> all(arguments + 1, arguments + argumentCount);
    if (std::ranges::find(all, "--help") != all.end()) {
        std::cout << kPublishUsage;
        return 0;
    }
    try {
        report(publish(parsePublishOptions(all)));
        return 0;
    } catch (const PublishError& error) {
        std::cerr << "orvane-publish: " << error.what() << "\n";
        if (error.status() == PublishStatus::usage) {
            std::cerr << "Try orvane-publish --help.\n";
        }
        return static_cast<int>(error.status());
    } catch (const std::exception& error) {
        std::cerr << "orvane-publish: " << error.what() << "\n";
        return static_cast<int>(PublishStatus::internalError);
    }
}
