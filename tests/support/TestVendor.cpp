#include "tests/support/TestVendor.h"

#include "platform/Bytes.h"
#include "tests/support/TrustedTestAuthorities.h"
#include "tools/DescriptionJson.h"
#include "verify/Crypto.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>

namespace orvane::test {

namespace {

namespace fs = std::filesystem;

constexpr char kEngineName[] = "varlen-setup";

/// What a server reads while it is replaced must be the old file or the new one.
void replaceFile(const fs::path& file, const std::string& contents) {
    writeFile(file.string() + ".new", contents);
    fs::rename(file.string() + ".new", file);
}

std::string enciphered(const std::string& program, const std::string& key) {
    const XorResult result = computeXOREncryption(bytesOf(program), key);
    EXPECT_EQ(result.code, kXorSuccess);
    return std::string(textOf(result.data.value()));
}

} // namespace

TestVendor::TestVendor() : server_({.folder = folder_.path(), .hosts = {}}) {
    trustAuthoritiesOf(folder_.path() / "ca.pem");
}

TestVendor::~TestVendor() {
    const fs::path unexpected = folder_.path() / "unexpected.log";
    if (fs::exists(unexpected)) {
        ADD_FAILURE() << "unexpected requests:\n" << contentsOf(unexpected);
    }
}

std::string TestVendor::origin() const { return server_.origin(); }

FileDownloadInfo TestVendor::publishEngine(const std::string& program,
                                           const std::string& encryptionAlgorithm) {
    const fs::path plainFile = folder_.path() / "published" / kEngineName;
    const fs::path encryptedFile = plainFile.string() + encryptedFileSuffix(encryptionAlgorithm);
    writeFile(plainFile, program);
    const std::string checksum = sha256File(plainFile);
    if (encryptionAlgorithm == "xor") {
        writeFile(encryptedFile, enciphered(program, checksum));
    } else {
        writeFile(encryptedFile, program);
    }
    FileDownloadInfo info{
        .URL = origin() + "/varlen/setup/" + kEngineName,
        .Checksum = checksum,
        .ChecksumAlgorithm = "sha256",
        .EncryptedFileChecksum = sha256File(encryptedFile),
        .EncryptionAlgorithm = encryptionAlgorithm,
        .Size = static_cast<std::int64_t>(program.size()),
        .Version = "14.2.7",
    };
    describe(info);
    return info;
}

void TestVendor::describe(const FileDownloadInfo& info) { answerDescriptionWith(tools::jsonOf(info).dump()); }

void TestVendor::answerDescriptionWith(const std::string& body) {
    replaceFile(folder_.path() / "published" / "downloadinstaller.json", body);
}

void TestVendor::setFaults(const std::string& json) { replaceFile(folder_.path() / "faults.json", json); }

void TestVendor::release() { writeFile(folder_.path() / "release", ""); }

std::vector<std::string> TestVendor::requests() const {
    std::vector<std::string> targets;
    std::ifstream log(folder_.path() / "requests.log");
    for (std::string line; std::getline(log, line);) {
        targets.push_back(nlohmann::json::parse(line).at("target"));
    }
    return targets;
}

std::vector<std::string> TestVendor::reportedLogs() const {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder_.path() / "reports")) {
        if (entry.path().extension() == ".log") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> logs(files.size());
    std::transform(files.begin(), files.end(), logs.begin(), contentsOf);
    return logs;
}

} // namespace orvane::test
