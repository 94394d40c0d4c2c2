#pragma once

#include "platform/Error.h"

#include <optional>
#include <string_view>

namespace orvane::platform {

/// Prefix of the URLs that a session may request without TLS; empty for none.
///
/// Chosen at link time. The product links the empty answer, so nothing that a user or an environment sets can
/// make it speak plain HTTP. The tests that run on a Mac link "http://127.0.0.1:", since no program may add a
/// certificate authority there.
std::string_view plainHttpPrefix();

/// Why a session must not request `url`; nullopt if it may. Asked before each request and each redirect. Any
/// thread.
std::optional<Error> refusalOfTransfer(std::string_view url);

} // namespace orvane::platform
