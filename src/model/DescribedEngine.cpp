#include "model/DescribedEngine.h"

#include "platform/ProgrammingError.h"
#include "platform/Url.h"

namespace orvane {

std::filesystem::path DescribedEngine::downloadLocation() const {
    if (!isEncrypted) {
        return location;
    }
    const std::string encrypted = location.string() + encryptedFileSuffix(info.EncryptionAlgorithm);
    if (!parsesAsUrl(encrypted)) {
        invalidInput("the enciphered engine's location is not a URL: " + encrypted);
    }
    return encrypted;
}

std::string DescribedEngine::downloadUrl() const {
    std::string url = isEncrypted ? info.URL + encryptedFileSuffix(info.EncryptionAlgorithm) : info.URL;
    if (!parsesAsUrl(url)) {
        invalidInput("the engine's address is not a URL: " + url);
    }
    return url;
}

} // namespace orvane
