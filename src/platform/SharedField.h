#pragma once

#include <mutex>
#include <utility>

namespace orvane {

/// A value that one thread writes while others read: each reader gets a whole copy, old or new.
///
/// It orders nothing else. Who writes when is stated where the field is declared.
template <typename Value>
class SharedField {
public:
    SharedField() = default;
    explicit SharedField(Value value) : value_(std::move(value)) {}

    Value load() const {
        const std::lock_guard lock(mutex_);
        return value_;
    }

    /// The old value is destroyed outside the lock, since its destructor may do anything.
    void store(Value value) {
        const std::lock_guard lock(mutex_);
        std::swap(value_, value);
    }

private:
    mutable std::mutex mutex_;
    Value value_{};
};

} // namespace orvane
