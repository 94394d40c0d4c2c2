#include "tests/support/Journal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orvane::test {

void Journal::add(std::string entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(std::move(entry));
}

std::vector<std::string> Journal::entries() const {
    const std::lock_guard lock(mutex_);
    return entries_;
}

bool Journal::contains(std::string_view entry) const {
    const std::lock_guard lock(mutex_);
    return std::find(entries_.begin(), entries_.end(), entry) != entries_.end();
}

std::size_t Journal::countOf(std::string_view prefix) const {
    const std::lock_guard lock(mutex_);
    const auto count = std::count_if(entries_.begin(), entries_.end(), [prefix](const std::string& entry) {
        return std::string_view(entry).starts_with(prefix);
    });
    return static_cast<std::size_t>(count);
}

std::string Journal::lastAfter(std::string_view prefix) const {
    const std::lock_guard lock(mutex_);
    const auto newest = std::find_if(entries_.rbegin(), entries_.rend(), [prefix](const std::string& entry) {
        return std::string_view(entry).starts_with(prefix);
    });
    return newest == entries_.rend() ? std::string() : newest->substr(prefix.size());
}

std::size_t Journal::positionOf(std::string_view entry) const {
    const std::lock_guard lock(mutex_);
    const auto found = std::find(entries_.begin(), entries_.end(), entry);
    return static_cast<std::size_t>(found - entries_.begin());
}

void Journal::clear() {
    const std::lock_guard lock(mutex_);
    entries_.clear();
}

std::string numberText(double number) {
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), end};
}

} // namespace orvane::test
