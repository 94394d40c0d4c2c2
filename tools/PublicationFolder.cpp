#include "tools/PublicationFolder.h"

#include "platform/Error.h"
#include "platform/Files.h"
#include "tools/CommandLine.h"
#include "tools/DescriptionJson.h"
#include "tools/OptionChecks.h"
#include "tools/StagedFile.h"
#include "tools/ToolError.h"
#include "verify/Versions.h"

#include <algorithm>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

FileDownloadInfo descriptionIn(const fs::path& file) {
    try {
        return decodeFileDownloadInfo(platform::FileHandle::forReading(file).readToEnd());
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::noInput, file.string() + ": " + error.localizedDescription());
    }
}

/// Runs an operation on the file system whose failure is one of writing.
template <typename Operation>
void write(Operation operation) {
    try {
        operation();
    } catch (const platform::Error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.localizedDescription());
    } catch (const fs::filesystem_error& error) {
        throw ToolError(ExitStatus::cannotCreate, error.what());
    }
}

} // namespace

std::vector<PublishedVersion> PublicationFolder::versions() const {
    std::error_code failure;
    fs::directory_iterator entries(path_, failure);
    if (failure) {
        throw ToolError(ExitStatus::noInput, path_.string() + ": " + failure.message());
    }
    const auto current = description(Channel::current);
    const auto staged = description(Channel::staged);
    std::vector<PublishedVersion> found;
    for (const fs::directory_entry& entry : entries) {
        const std::string name = entry.path().filename().string();
        if (entry.is_directory() && checkVersion(name).empty()) {
            found.push_back(version(name));
            found.back().isCurrent = current == found.back().description;
            found.back().isStaged = staged == found.back().description;
        }
    }
    std::ranges::sort(found, [](const PublishedVersion& left, const PublishedVersion& right) {
        return compareVersions(left.description.Version, right.description.Version) ==
               ComparisonResult::descending;
    });
    return found;
}

PublishedVersion PublicationFolder::version(const std::string& name) const {
    const fs::path folder = path_ / name;
    if (!fs::is_directory(folder)) {
        throw ToolError(ExitStatus::noInput,
                        path_.string() + " has no version " + name + " (see orvane-publish list)");
    }
    PublishedVersion found{.description = descriptionIn(folder / kDescriptionName), .engineFile = {}};
    const FileDownloadInfo& info = found.description;
    if (info.Version != name) {
        throw ToolError(ExitStatus::badData,
                        (folder / kDescriptionName).string() + " describes another version, " + info.Version);
    }
    const std::string suffix =
        info.EncryptionAlgorithm.empty() ? "" : encryptedFileSuffix(info.EncryptionAlgorithm);
    found.engineFile = folder / (info.URL.substr(info.URL.rfind('/') + 1) + suffix);
    std::error_code failure;
    const std::uintmax_t size = fs::file_size(found.engineFile, failure);
    if (failure) {
        throw ToolError(ExitStatus::noInput, found.engineFile.string() + ": " + failure.message());
    }
    found.size = static_cast<std::int64_t>(size);
    return found;
}

std::optional<FileDownloadInfo> PublicationFolder::description(Channel channel) const {
    const fs::path file = descriptionFile(channel);
    return fs::exists(file) ? std::optional(descriptionIn(file)) : std::nullopt;
}

fs::path PublicationFolder::descriptionFile(Channel channel) const {
    return path_ / (channel == Channel::current ? kDescriptionName : "downloadinstaller-staged.json");
}

void PublicationFolder::switchTo(Channel channel, const PublishedVersion& version) const {
    write([&] {
        const StagedFile file(descriptionFile(channel));
        file.write(bytesOf(documentOf(version.description)));
        file.commit();
    });
}

void PublicationFolder::endStaging() const {
    write([&] { fs::remove(descriptionFile(Channel::staged)); });
}

void PublicationFolder::remove(const PublishedVersion& version) const {
    // Renamed first: an interrupted removal leaves no version that looks complete.
    write([&] {
        const fs::path removed = path_ / ("." + version.description.Version + ".removed");
        fs::remove_all(removed);
        fs::rename(version.engineFile.parent_path(), removed);
        fs::remove_all(removed);
    });
}

std::vector<PublishedVersion> prunable(const std::vector<PublishedVersion>& newestFirst, std::size_t keep) {
    std::vector<PublishedVersion> old(newestFirst.begin() +
                                          static_cast<std::ptrdiff_t>(std::min(keep, newestFirst.size())),
                                      newestFirst.end());
    std::erase_if(old, [](const PublishedVersion& version) { return version.isCurrent || version.isStaged; });
    return old;
}

} // namespace orvane::tools
