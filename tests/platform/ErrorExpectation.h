#pragma once

#include "platform/Error.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

namespace orvane::test {

/// `act` must throw the error of the C library with this errno value, naming `subject`.
inline void expectError(int errorNumber, const std::string& subject, const std::function<void()>& act) {
    try {
        act();
        ADD_FAILURE() << "nothing was thrown for " << subject;
    } catch (const platform::Error& error) {
        EXPECT_EQ(error.domain(), "POSIX");
        EXPECT_EQ(error.code(), errorNumber) << error.localizedDescription();
        EXPECT_NE(error.localizedDescription().find(subject), std::string::npos)
            << error.localizedDescription();
    }
}

} // namespace orvane::test
