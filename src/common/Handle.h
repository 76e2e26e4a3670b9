#pragma once

#include <memory>
#include <type_traits>

namespace common {

/// Owns a system handle and releases it with `Release`. One template for every kind; the aliases stand
/// beside their users.
template <typename H, auto Release> struct HandleRelease {
    using pointer = H;
    void operator()(H handle) const { Release(handle); }
};
template <typename H, auto Release>
using Handle = std::unique_ptr<std::remove_pointer_t<H>, HandleRelease<H, Release>>;

} // namespace common
