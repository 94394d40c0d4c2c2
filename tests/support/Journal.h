#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace orvane::test {

/// What happened in a test, one line an effect, in the order in which it happened. Any thread.
class Journal {
public:
    void add(std::string entry);

    std::vector<std::string> entries() const;

    bool contains(std::string_view entry) const;

    /// How many entries begin with `prefix`.
    std::size_t countOf(std::string_view prefix) const;

    /// What follows `prefix` in the newest entry that begins with it; empty when there is none.
    std::string lastAfter(std::string_view prefix) const;

    /// The position of the first such entry; the number of entries when there is none.
    std::size_t positionOf(std::string_view entry) const;

    void clear();

private:
    mutable std::mutex mutex_;
    std::vector<std::string> entries_;
};

/// The shortest decimal text that reads back as the same number.
std::string numberText(double number);

} // namespace orvane::test
