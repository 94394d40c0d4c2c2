#include "tests/platform/ErrorExpectation.h"
#include "tests/platform/ProcessFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace orvane::test {

namespace {

using platform::Process;

TEST_F(ProcessTest, WhatCannotBeLaunchedIsAnErrorNamingIt) {
    writeFile(at("plain"), "#!/bin/sh\n");
    writeFile(at("no program"), "just text");
    std::filesystem::permissions(at("no program"), std::filesystem::perms::owner_all);
    const std::vector<std::pair<std::filesystem::path, int>> cases{
        {at("missing"), ENOENT}, {at("plain"), EACCES}, {at("no program"), ENOEXEC}, {at(""), EACCES}};
    for (const auto& [path, errorNumber] : cases) {
        Process process;
        process.setLaunchPath(path);
        expectError(errorNumber, path, [&process] { process.launch(); });
    }
}

TEST_F(ProcessTest, TheChildStartsWithDefaultSignals) {
    sigset_t signals;
    sigset_t before;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGUSR2);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &signals, &before), 0);
    const auto pipeHandler = std::signal(SIGPIPE, SIG_IGN);
    const auto hangUpHandler = std::signal(SIGHUP, SIG_IGN);
    std::istringstream status(outputOf(*shell("exec cat /proc/self/status")));
    std::signal(SIGHUP, hangUpHandler);
    std::signal(SIGPIPE, pipeHandler);
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, &before, nullptr), 0);
    std::map<std::string, std::string> fields;
    for (std::string name, value; status >> name && std::getline(status >> std::ws, value);) {
        fields[name] = value;
    }
    EXPECT_EQ(fields["SigBlk:"], "0000000000000000");
    // The C library keeps two signals for itself (signal(7)) and has every child ignore them.
    EXPECT_EQ(std::stoull(fields["SigIgn:"], nullptr, 16) & ~0x180000000ULL, 0U);
}

TEST_F(ProcessTest, TheChildSeesNoFileOfOurs) {
    writeFile(at("secret"), "");
    const int ours = ::open(at("secret").c_str(), O_RDONLY); // not close-on-exec
    const int high = ::fcntl(ours, F_DUPFD, 500);
    const std::string output = outputOf(*shell("for entry in /proc/$$/fd/*; do readlink $entry; done; true"));
    ::close(high);
    ::close(ours);
    EXPECT_EQ(output.find("secret"), std::string::npos) << output;
}

TEST_F(ProcessTest, TheResultIsRightEvenWhereEndedChildrenWereToBeForgotten) {
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(resultOf(*shell("exit 9")), 9);
    std::signal(SIGCHLD, handler);
}

} // namespace

} // namespace orvane::test
