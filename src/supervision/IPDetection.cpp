#include "supervision/IPDetection.h"

#include "common/Numbers.h"
#include "gui/Aside.h"
#include "settings/kToolsSettings.h"

#include <winsock2.h>

#include <optional>

namespace supervision {

namespace {

// Longer names exist nowhere, and resolvers have been known to copy a name before they measure it.
constexpr std::size_t kLongestHostName = 1024;

/// The own host's name; nothing, and one message more, when the system does not tell it.
std::optional<std::string> OwnHostName(std::vector<std::string>& messages) {
    char buffer[256] = "";
    if (gethostname(buffer, sizeof buffer) != SOCKET_ERROR)
        return buffer;
    messages.push_back(
        "Windows Socket function calls failed. [Winsock Error:" + std::to_string(WSAGetLastError()) + "]");
    return {};
}

void Resolve(const std::string& name, DetectedAddresses& addresses) {
    if (name.size() > kLongestHostName)
        return;
    const hostent* host = gethostbyname(name.c_str());
    if (!host)
        return;
    const auto length = static_cast<std::size_t>(host->h_length);
    for (char** address = host->h_addr_list; *address; ++address)
        addresses[0] = DottedText(std::as_bytes(std::span<const char>(*address, length)));
}

/// Looks up the host that `nameOf` names, between a start and a release of the socket library.
Detection Detect(const auto& nameOf) {
    Detection detection;
    if (!StartWinsock(detection.messages)) {
        // No runtime error lies behind this failure, so there is neither number nor description to tell.
        detection.messages.emplace_back("An error has occured. Error Number:0 Description:");
        return detection;
    }
    if (const std::optional<std::string> name = nameOf(detection.messages))
        Resolve(*name, detection.addresses);
    StopWinsock(detection.messages);
    return detection;
}

} // namespace

gui::Task<Detection> DetectAddresses(clsINI kTools) {
    const double method = common::Val(kTools.INIProperty(settings::key::kIPDetectionMethod));
    if (method != 0 && method != 1)
        co_return Detection{};
    // A name server that is silent holds up nothing but this.
    const auto detect = [own = method == 0, name = kTools.INIProperty(settings::key::kDynamicHostname)] {
        return own ? DetectLocalAddresses() : DetectHostAddresses(name);
    };
    Detection detection = co_await gui::Aside(detect);
    co_return detection;
}

Detection DetectLocalAddresses() {
    return Detect(OwnHostName);
}

Detection DetectHostAddresses(const std::string& name) {
    return Detect([&](std::vector<std::string>&) { return std::optional(name); });
}

bool StartWinsock(std::vector<std::string>& messages) {
    WSADATA data{};
    const int code = WSAStartup(MAKEWORD(1, 1), &data);
    if (code != 0)
        messages.push_back(StartFailureText(code, data.wVersion));
    return code == 0;
}

void StopWinsock(std::vector<std::string>& messages) {
    if (WSACleanup() != 0)
        messages.push_back("Winsocks clean up failed. Error Number:[" + std::to_string(WSAGetLastError()));
}

std::string StartFailureText(int code, std::uint16_t version) {
    const unsigned low = version & 0xFFu;
    const unsigned high = version >> 8;
    // The high byte, the lesser number, stands first in this message.
    if (low < 1 || (low == 1 && high < 1))
        return "Your Winsocks Implementation only supports up to version" + std::to_string(high) + "." +
               std::to_string(low);
    return "Winsocks Error [" + std::to_string(code) + "] occured when starting Winsocks";
}

std::string DottedText(std::span<const std::byte> address) {
    std::string text;
    for (const std::byte part : address) {
        if (!text.empty())
            text += '.';
        text += std::to_string(std::to_integer<unsigned>(part));
    }
    return text;
}

} // namespace supervision
