#pragma once

#include <cstdint>
#include <string>

namespace orvane {

/// `length` characters drawn independently and uniformly from the lower-case letters, the capitals and the
/// digits. A negative length is a programming error.
std::string RandomString(std::int64_t length);

} // namespace orvane

// The channel on which the engine reports: each message is a signed 32-bit type and a text of up to 4096
// bytes, UTF-8 and normally NUL-terminated. Plain C functions; they print what they do on standard output,
// not in the run's log.

/// Makes a port and registers it under `name`, for the life of the process. Returns the port's name, or -1,
/// -2 or -3 when making it, letting others send to it or registering it failed. Main thread.
extern "C" std::int64_t initializeMachPort(const char* name);

/// Blocks until a message arrives on `port`, then writes its type to `*type` and exactly 4096 bytes to
/// `buffer`: the text, then NULs; a text that fills the field is not terminated. `length` is the buffer's
/// size. Returns 0; or 1 when the buffer is shorter than 4096 bytes, or 2 when the receipt failed (message
/// too long, sender refused), with nothing written. One thread at a time for each port.
extern "C" std::int32_t waitMachPortMessage(std::int64_t port, std::int32_t* type, char* buffer,
                                            std::int32_t length);
