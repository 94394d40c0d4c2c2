#include "tools/ReportReader.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/tools/ReportSamples.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <sstream>

namespace orvane::tools {
namespace {

namespace fs = std::filesystem;

class ReportReaderTest : public testing::Test {
protected:
    void read(const fs::path& path) { reader_.read(path); }
    void readStream(const std::string& text) {
        std::istringstream stream(text);
        reader_.readStream(stream, "stream");
    }

    std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const FoundLog& log : found_) {
            texts.push_back(log.text);
        }
        std::ranges::sort(texts);
        return texts;
    }

    std::vector<Unusable> skippedKinds() const {
        std::vector<Unusable> kinds;
        for (const SkippedFile& file : skipped_) {
            kinds.push_back(file.kind);
        }
        return kinds;
    }

    test::TemporaryFolder folder_;
    std::vector<FoundLog> found_;
    std::vector<SkippedFile> skipped_;
    ReportReader reader_{[this](FoundLog log) { found_.push_back(std::move(log)); },
                         [this](const SkippedFile& file) { skipped_.push_back(file); }};
};

using Texts = std::vector<std::string>;
using Kinds = std::vector<Unusable>;

TEST_F(ReportReaderTest, ReadsBodiesAsAWebServerStoresThemInFolders) {
    test::writeFile(folder_.path() / "0000000001", reportOf("one"));
    test::writeFile(folder_.path() / "2/00/0000000002", reportOf("two"));
    read(folder_.path());
    EXPECT_EQ(texts(), (Texts{"one", "two"}));
    EXPECT_TRUE(skipped_.empty());
    EXPECT_EQ(found_.front().source, LogSource::crashReport);
}

TEST_F(ReportReaderTest, ReadsEachReportOfTheDemoVendorOnce) {
    test::writeFile(folder_.path() / "001.json", reportOf("12:34:56: one\r\n"));
    test::writeFile(folder_.path() / "001.log", "12:34:56: one\r\n");
    test::writeFile(folder_.path() / "Install 2026-11-21 (bootstrap).log", "12:34:56: two\r\n");
    read(folder_.path());
    EXPECT_EQ(texts(), (Texts{"12:34:56: one\r\n", "12:34:56: two\r\n"}));
    read(folder_.path() / "001.log");
    EXPECT_EQ(found_.back().source, LogSource::file);
    EXPECT_TRUE(skipped_.empty());
}

TEST_F(ReportReaderTest, TheTimeOfReceiptIsTheFiles) {
    const fs::path file = folder_.path() / "report";
    test::writeFile(file, reportOf("one"));
    const ReceiptTime time =
        std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + std::chrono::hours(12);
    fs::last_write_time(file, fs::file_time_type::clock::from_sys(time));
    read(file);
    EXPECT_EQ(found_.at(0).received, time);
    EXPECT_EQ(found_.at(0).name, file.string());
    readStream(reportOf("two"));
    EXPECT_EQ(found_.at(1).received, std::nullopt);
}

TEST_F(ReportReaderTest, NamesWhatIsNoReportAndGoesOn) {
    test::writeFile(folder_.path() / "a/page", "<html>");
    test::writeFile(folder_.path() / "a/cut", reportOf("one").substr(0, 50));
    test::writeFile(folder_.path() / "a/empty", "");
    fs::create_symlink(folder_.path() / "a/page", folder_.path() / "a/link");
    fs::create_directory_symlink(folder_.path(), folder_.path() / "a/circle");
    test::writeFile(folder_.path() / "z", reportOf("two"));
    read(folder_.path());
    EXPECT_EQ(texts(), Texts{"two"});
    auto kinds = skippedKinds();
    std::ranges::sort(kinds);
    EXPECT_EQ(kinds, (Kinds{Unusable::foreign, Unusable::foreign, Unusable::foreign, Unusable::damaged,
                            Unusable::damaged}));
    for (const SkippedFile& file : skipped_) {
        EXPECT_TRUE(file.name.starts_with((folder_.path() / "a").string())) << file.name;
        EXPECT_FALSE(file.reason.empty());
    }
}

TEST_F(ReportReaderTest, NamesAFileThatIsNotThere) {
    read(folder_.path() / "none");
    EXPECT_EQ(skippedKinds(), Kinds{Unusable::unreadable});
}

TEST_F(ReportReaderTest, DoesNotReadWhatIsLargerThanAnyReport) {
    const fs::path file = folder_.path() / "large";
    test::writeFile(file, "{");
    fs::resize_file(file, (std::uintmax_t{128} << 20U) + 1);
    read(file);
    EXPECT_EQ(skippedKinds(), Kinds{Unusable::foreign});
}

TEST_F(ReportReaderTest, ReadsBodiesOneAfterAnotherAndNumbersThem) {
    readStream(reportOf("one") + reportOf("two") + "\n<html>\n" + reportOf("three"));
    EXPECT_EQ(texts(), (Texts{"one", "three", "two"}));
    EXPECT_EQ(found_.at(2).name, "stream:4");
    ASSERT_EQ(skipped_.size(), 1U);
    EXPECT_EQ(skipped_.front().name, "stream:3");
}

TEST_F(ReportReaderTest, AnEmptyStreamIsNamed) {
    readStream("");
    EXPECT_EQ(skippedKinds(), Kinds{Unusable::damaged});
}

} // namespace
} // namespace orvane::tools
