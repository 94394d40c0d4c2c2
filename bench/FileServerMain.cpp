#include "tests/support/LoopbackServer.h"
#include "tests/support/TlsTransport.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace orvane::test;

constexpr int kUsageStatus = 64;
constexpr std::size_t kPiece = std::size_t{1} << 20;

/// The last component of the path asked for; the description has its name from the query's side.
std::string fileNameIn(const std::string& request) {
    const std::size_t start = request.find(' ') + 1;
    const std::string target = request.substr(start, request.find_first_of(" ?", start) - start);
    const std::string name = target.substr(target.rfind('/') + 1);
    return name == "downloadinstaller" ? name + ".json" : name;
}

/// A file in memory as it lies in the cache.
class MappedFile {
public:
    explicit MappedFile(const std::filesystem::path& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
        struct stat status {};
        if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0 || status.st_size == 0) {
            return;
        }
        size_ = static_cast<std::size_t>(status.st_size);
        void* start = ::mmap(nullptr, size_, PROT_READ, MAP_SHARED | MAP_POPULATE, descriptor_, 0);
        start_ = start == MAP_FAILED ? nullptr : static_cast<const char*>(start);
    }
    ~MappedFile() {
        if (start_ != nullptr) {
            ::munmap(const_cast<char*>(start_), size_);
        }
        ::close(descriptor_);
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::string_view contents() const {
        return start_ == nullptr ? std::string_view() : std::string_view(start_, size_);
    }

private:
    const int descriptor_;
    std::size_t size_ = 0;
    const char* start_ = nullptr;
};

void answer(LoopbackConnection& connection, const std::filesystem::path& folder) {
    const MappedFile file(folder / fileNameIn(connection.readRequest()));
    std::string_view left = file.contents();
    bool isTaken = connection.send("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: " +
                                   std::to_string(left.size()) + "\r\n\r\n");
    while (isTaken && !left.empty()) {
        isTaken = connection.send(left.substr(0, kPiece));
        left.remove_prefix(std::min(kPiece, left.size()));
    }
}

} // namespace

/// BenchFileServer FOLDER: serves its files by HTTPS as fast as it can, until it is ended. Writes the
/// authority to trust into ca.pem and then its origin into "origin".
int main(int argumentCount, char** arguments) {
    if (argumentCount != 2) {
        std::fprintf(stderr, "usage: BenchFileServer FOLDER\n");
        return kUsageStatus;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    const std::filesystem::path folder = arguments[1];
    const LoopbackServer server([&folder](LoopbackConnection& connection) { answer(connection, folder); });
    std::filesystem::copy_file(knownAuthorityFile(), folder / "ca.pem",
                               std::filesystem::copy_options::overwrite_existing);
    std::string origin = server.url();
    origin.pop_back();
    std::ofstream(folder / "origin.partial") << origin << "\n";
    std::filesystem::rename(folder / "origin.partial", folder / "origin");
    int signal = 0;
    sigwait(&signals, &signal);
    return 0;
}
