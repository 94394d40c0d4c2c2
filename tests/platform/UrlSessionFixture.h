#pragma once

#include "platform/UrlSession.h"
#include "tests/platform/RecordingDelegate.h"
#include "tests/support/LoopbackServer.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace orvane::test {

/// A server that answers each connection's one request with fixed bytes.
LoopbackServer::Conversation answering(const std::string& response);

/// A whole response with status 200, its length announced.
std::string okResponse(const std::string& body);

/// Head and beginning of such a response, announcing `length` bytes of body.
std::string okHead(std::size_t length);

/// A whole response that sends the client elsewhere.
std::string redirectTo(const std::string& location);

/// Text in which every place differs from its neighbours.
std::string longText(std::size_t length);

class UrlSessionFixture : public testing::Test {
protected:
    /// Carries out one request to its end and returns what the delegate saw.
    static Record fetch(const platform::UrlRequest& request);
    static Record fetch(const std::string& url);

    static std::unique_ptr<platform::UrlSession>
    makeSession(const std::shared_ptr<platform::UrlSessionDataDelegate>& delegate);
};

} // namespace orvane::test
