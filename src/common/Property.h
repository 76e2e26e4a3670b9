#pragma once

#include <utility>

namespace common {

/// A value that is read and written by the same name: `log.LogPath()` and `log.LogPath(folder)`.
template <typename T> class Property {
public:
    Property() = default;
    explicit Property(T value) : value_(std::move(value)) {}

    const T& operator()() const { return value_; }
    void operator()(T value) { value_ = std::move(value); }

private:
    T value_{};
};

} // namespace common
