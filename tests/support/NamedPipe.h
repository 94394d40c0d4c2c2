#pragma once

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvane::test {

/// A pipe in the file system, by which a test tells a child process to go on. A reader waits at it until
/// something was sent; sending waits for nobody.
class NamedPipe {
public:
    explicit NamedPipe(std::filesystem::path path) : path_(std::move(path)) {
        EXPECT_EQ(mkfifo(path_.c_str(), 0600), 0);
        // Open to read and write, so that neither side waits for the other to open it (fifo(7)).
        descriptor_ = open(path_.c_str(), O_RDWR | O_CLOEXEC);
        EXPECT_GE(descriptor_, 0);
    }
    ~NamedPipe() { close(descriptor_); }
    NamedPipe(const NamedPipe&) = delete;
    NamedPipe& operator=(const NamedPipe&) = delete;

    std::string path() const { return path_.string(); }

    void send(const std::string& line) const {
        EXPECT_EQ(write(descriptor_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
    }

private:
    std::filesystem::path path_;
    int descriptor_ = -1;
};

} // namespace orvane::test
