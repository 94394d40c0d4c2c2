#pragma once

#include <string>
#include <string_view>

namespace orvane::test {

/// Sends datagrams to an endpoint, the way an engine does. A send that fails fails the test.
class Sender {
public:
    explicit Sender(std::string endpoint);
    ~Sender();
    Sender(const Sender&) = delete;
    Sender& operator=(const Sender&) = delete;

    void send(std::string_view datagram) const;

    /// From a process of another user. For root only.
    void sendAs(unsigned user, std::string_view datagram) const;

    /// Gives the receiver `count` open descriptors along.
    void sendWithDescriptors(std::string_view datagram, int count) const;

private:
    const std::string endpoint_;
    const int socket_;
};

} // namespace orvane::test
