#pragma once

#include "platform/Error.h"

#include <variant>

namespace orvane {

/// How an operation that ends later has ended: with its value or with an error.
template <typename T>
using ResultType = std::variant<T, platform::Error>;

/// The error of `result`; null after a success.
template <typename T>
const platform::Error* errorOf(const ResultType<T>& result) {
    return std::get_if<platform::Error>(&result);
}

} // namespace orvane
