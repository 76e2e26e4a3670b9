#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace accounts {

/// The columns of the privilege file, and an account's flags in their order: 0 denied, 1 granted.
inline constexpr std::size_t kPrivilegeCount = 15;
using Privileges = std::array<std::int16_t, kPrivilegeCount>;

/// As a flag for Modify: leave the privilege as it is. As the first flag from Retrieve: no game master.
inline constexpr std::int16_t kLeaveAsItIs = 2;

/// The columns' names, as the file's header has them.
extern const std::array<const char*, kPrivilegeCount> kPrivilegeNames;

/// A line of the privilege file. What was written by hand into a line stays until a flag of it is changed,
/// and around that flag then too.
struct GMRow {
    /// False for a line without an account number at its start.
    bool isAccount = false;
    std::int32_t id = 0;
    Privileges flags{};
    /// The line as it was read or is to be written.
    std::string text;

    static GMRow Read(std::string_view line);
    static GMRow Of(std::int32_t id, const Privileges& flags);
    void Set(std::size_t privilege, std::int16_t flag);
};

/// The first line of the file.
std::string GMHeader();

} // namespace accounts
