#include "tools/ProgramFormat.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orvane::tools {
namespace {

using namespace std::string_literals;

class ProgramFormatTest : public testing::Test {
protected:
    std::optional<Program> programOf(const std::string& contents) {
        const auto file = folder_.path() / "file";
        test::writeFile(file, contents);
        return programIn(file);
    }

    std::string kindOf(const std::string& contents) {
        const auto program = programOf(contents);
        return program ? program->kind : "none";
    }

    test::TemporaryFolder folder_;
};

std::string elf(char type, char machine) {
    return "\x7F"
           "ELF\2\1"s +
           std::string(10, '\0') + type + '\0' + machine + '\0' + std::string(44, '\0');
}

std::string mach(char processor, char type) {
    return "\xCF\xFA\xED\xFE"s + processor + "\0\0\1\0\0\0\0"s + type + std::string(19, '\0');
}

std::string universal(char magic, std::size_t entrySize, const std::string& processors) {
    std::string contents = "\xCA\xFE\xBA"s + magic + "\0\0\0"s + static_cast<char>(processors.size());
    for (const char processor : processors) {
        contents += "\1\0\0"s + processor + std::string(entrySize - 4, '\0');
    }
    return contents;
}

TEST_F(ProgramFormatTest, TellsLinuxProcessorsApart) {
    EXPECT_EQ(kindOf(elf(2, 62)), "a Linux program for amd64");
    EXPECT_TRUE(programOf(elf(3, '\xB7'))->runsOn("linux-arm64"));
    EXPECT_FALSE(programOf(elf(3, '\xB7'))->runsOn("linux-amd64"));
    EXPECT_TRUE(programOf(elf(3, 3))->systems.empty());
}

TEST_F(ProgramFormatTest, TakesNoObjectFilesOrOtherWordSizes) {
    EXPECT_EQ(kindOf(elf(1, 62)), "none");
    std::string narrow = elf(2, 62);
    narrow[4] = 1;
    EXPECT_EQ(kindOf(narrow), "none");
    EXPECT_EQ(kindOf(mach(7, 6)), "none");
    EXPECT_EQ(kindOf("\x7F"
                     "ELF"),
              "none");
}

TEST_F(ProgramFormatTest, KnowsThinAndUniversalProgramsOfMacOs) {
    EXPECT_EQ(kindOf(mach(7, 2)), "a macOS program for x86_64");
    EXPECT_EQ(kindOf(mach(12, 2)), "a macOS program for arm64");
    EXPECT_EQ(kindOf(universal('\xBE', 20, "\x07\x0C")), "a macOS program for x86_64 and arm64");
    EXPECT_EQ(kindOf(universal('\xBF', 32, "\x0C\x07")), "a macOS program for arm64 and x86_64");
    EXPECT_TRUE(programOf(universal('\xBE', 20, "\x12"))->systems.empty());
    EXPECT_FALSE(programOf(mach(7, 2))->runsOn("linux-amd64"));
}

TEST_F(ProgramFormatTest, TakesNoJavaClassForAUniversalProgram) {
    EXPECT_EQ(kindOf("\xCA\xFE\xBA\xBE\0\0\0\x3D"s), "none");
    EXPECT_EQ(kindOf("\xCA\xFE\xBA\xBE"), "none");
}

TEST_F(ProgramFormatTest, LetsScriptsRunAnywhere) {
    for (const std::string& system : knownSystems()) {
        EXPECT_TRUE(programOf("#!/bin/sh\n")->runsOn(system));
    }
    EXPECT_EQ(kindOf("# a comment\n"), "none");
    EXPECT_EQ(kindOf(""), "none");
}

TEST_F(ProgramFormatTest, RecognisesThisVeryProgram) {
    EXPECT_TRUE(programIn("/proc/self/exe")->runsOn(thisSystem()));
}

TEST_F(ProgramFormatTest, RecognisesInstallerPackages) {
    const auto file = folder_.path() / "file";
    test::writeFile(file, "xar!\0\x1C"s);
    EXPECT_TRUE(isInstallerPackage(file));
    test::writeFile(file, "PK");
    EXPECT_FALSE(isInstallerPackage(file));
}

} // namespace
} // namespace orvane::tools
