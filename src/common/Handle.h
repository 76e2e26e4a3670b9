#pragma once

#include <cstdint>
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

/// Owns what a call of the system returned. Some calls answer a failure with null and some with -1; here it
/// is null for all of them.
template <class Owner> Owner Own(typename Owner::pointer handle) {
    return Owner(reinterpret_cast<std::intptr_t>(handle) == -1 ? nullptr : handle);
}

} // namespace common
