#pragma once

#include "gui/Task.h"
#include "settings/clsINI.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// Finds the address by which this computer is reached. Each detection starts the socket library and releases
/// it again.
namespace supervision {

/// One element: the last address of the host's list, dotted; "" when the detection failed.
using DetectedAddresses = std::array<std::string, 1>;

/// What a detection found.
struct Detection {
    DetectedAddresses addresses;
    /// What the socket library failed with, for the user, in order; the caller shows them. A name that does
    /// not resolve is no failure of the library and has no message.
    std::vector<std::string> messages;
};

/// Detects by the method that kTools.ini names: this computer's own name, or the dynamic host name. Any other
/// method finds nothing. Raises the errors of reading the file.
gui::Task<Detection> DetectAddresses(clsINI kTools);

/// The addresses of this computer's own host name. Both take as long as the system's resolver.
Detection DetectLocalAddresses();

/// The addresses of the host `name`, which is looked up as it is.
Detection DetectHostAddresses(const std::string& name);

/// Starts the socket library, version 1.1; false, and one message more, when it does not start.
bool StartWinsock(std::vector<std::string>& messages);

/// Releases the socket library, once for each start; adds a message when that fails.
void StopWinsock(std::vector<std::string>& messages);

/// What a failed start says: `code` is its result, `version` the version word that the library offers, its
/// main number in the low byte.
std::string StartFailureText(int code, std::uint16_t version);

/// The bytes of an address in decimal, joined by dots.
std::string DottedText(std::span<const std::byte> address);

} // namespace supervision
