#pragma once

#include "model/FileDownloadInfo.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvane::tools {

inline constexpr char kDescriptionName[] = "downloadinstaller.json";

/// The two descriptions that a server can answer with: for most clients, and for those of a staged roll-out.
enum class Channel { current, staged };

struct PublishedVersion {
    FileDownloadInfo description;
    std::filesystem::path engineFile; ///< what is transferred
    std::int64_t size = 0;            ///< of that file, in bytes
    bool isCurrent = false;
    bool isStaged = false;
};

/// A folder with one subfolder for each published version and, beside them, the descriptions that users get:
///
///     14.2.7/varlen-setup.enc          what is transferred
///     14.2.7/downloadinstaller.json    its description
///     14.3.1/…
///     downloadinstaller.json           copy of the current version's description
///     downloadinstaller-staged.json    copy of the description for a staged roll-out, if there is one
///
/// A version's folder appears complete and never changes; descriptions are replaced by renaming. All
/// operations throw `ToolError`: when the folder or a description in it cannot be read or written.
class PublicationFolder {
public:
    explicit PublicationFolder(std::filesystem::path path) : path_(std::move(path)) {}

    /// From the newest to the oldest.
    std::vector<PublishedVersion> versions() const;

    /// Without telling whether it is current or staged.
    PublishedVersion version(const std::string& name) const;

    /// What users of a channel get now; nothing before the first switch.
    std::optional<FileDownloadInfo> description(Channel channel) const;

    std::filesystem::path descriptionFile(Channel channel) const;

    /// Lets users get a version. Readers find either the old description or the new one.
    void switchTo(Channel channel, const PublishedVersion& version) const;

    /// Ends a staged roll-out: removes the staged description.
    void endStaging() const;

    void remove(const PublishedVersion& version) const;

private:
    std::filesystem::path path_;
};

/// Those that can be removed when the `keep` newest stay; the current and the staged one stay as well.
std::vector<PublishedVersion> prunable(const std::vector<PublishedVersion>& newestFirst, std::size_t keep);

} // namespace orvane::tools
