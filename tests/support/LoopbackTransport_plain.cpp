#include "tests/support/LoopbackTransport.h"

#include <sys/socket.h>

namespace orvane::test {

namespace {

class PlainStream final : public LoopbackStream {
public:
    explicit PlainStream(int socket) : socket_(socket) {}

    bool accept() override { return true; }

    std::ptrdiff_t read(std::span<char> place) override {
        return ::recv(socket_, place.data(), place.size(), 0);
    }

    bool write(std::string_view bytes) override {
        while (!bytes.empty()) {
            const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), 0);
            if (sent < 0) {
                return false;
            }
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        }
        return true;
    }

    void sayGoodBye() override {} // the end of the connection is the only one there is

private:
    const int socket_;
};

class PlainTransport final : public LoopbackTransport {
public:
    std::string scheme() const override { return "http"; }
    std::unique_ptr<LoopbackStream> streamOver(int socket) override {
        return std::make_unique<PlainStream>(socket);
    }
};

} // namespace

/// For programs that cannot add a certificate authority; they link PlainHttpOnLoopback.cpp as well.
std::shared_ptr<LoopbackTransport> believedTransport() { return std::make_shared<PlainTransport>(); }

} // namespace orvane::test
