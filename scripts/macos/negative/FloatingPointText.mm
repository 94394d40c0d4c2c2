// availability: 'to_chars' is unavailable: introduced in macOS 13.3

#include <charconv>
#include <system_error>

std::to_chars_result render(char* first, char* last, double value);

std::to_chars_result render(char* first, char* last, double value) {
#if FAULT
    return std::to_chars(first, last, value);
#else
    return std::to_chars(first, last, static_cast<long>(value));
#endif
}
