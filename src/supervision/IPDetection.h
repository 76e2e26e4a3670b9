#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// Finds the address by which this computer is reached. Each detection starts the socket library and releases
/// it again; failures of the library show their message, a name that does not resolve shows none.
namespace supervision {

/// One element: the last address of the host's list, dotted; "" when the detection failed.
using DetectedAddresses = std::array<std::string, 1>;

/// The addresses of this computer's own host name.
DetectedAddresses DetectLocalAddresses();

/// The addresses of the host `name`, which is looked up as it is. May take as long as the system's resolver.
DetectedAddresses DetectHostAddresses(const std::string& name);

/// Starts the socket library, version 1.1; false, after a message, when it does not start.
bool StartWinsock();

/// Releases the socket library once for each start; shows a message when that fails.
void StopWinsock();

/// What a failed start says: `code` is its result, `version` the version word that the library offers, its
/// main number in the low byte.
std::string StartFailureText(int code, std::uint16_t version);

/// The bytes of an address in decimal, joined by dots.
std::string DottedText(std::span<const std::byte> address);

} // namespace supervision
