#include "supervision/IPDetection.h"

#include "gui/MsgBox.h"

#include <winsock2.h>

namespace supervision {

namespace {

// Longer names exist nowhere, and resolvers have been known to copy a name before they measure it.
constexpr std::size_t kLongestHostName = 1024;

/// The own host's name; nothing, after a message, when the system does not tell it.
bool ReadOwnHostName(std::string& name) {
    char buffer[256] = "";
    if (gethostname(buffer, sizeof buffer) == SOCKET_ERROR) {
        gui::MsgBox("Windows Socket function calls failed. [Winsock Error:" +
                    std::to_string(WSAGetLastError()) + "]");
        return false;
    }
    name = buffer;
    return true;
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

/// Runs `find` on the list between a start and a release of the socket library.
DetectedAddresses Detect(const auto& find) {
    DetectedAddresses addresses;
    if (!StartWinsock()) {
        // No runtime error lies behind this failure, so there is neither number nor description to tell.
        gui::MsgBox("An error has occured. Error Number:0 Description:");
        return addresses;
    }
    find(addresses);
    StopWinsock();
    return addresses;
}

} // namespace

DetectedAddresses DetectLocalAddresses() {
    return Detect([](DetectedAddresses& addresses) {
        std::string name;
        if (ReadOwnHostName(name))
            Resolve(name, addresses);
    });
}

DetectedAddresses DetectHostAddresses(const std::string& name) {
    return Detect([&](DetectedAddresses& addresses) { Resolve(name, addresses); });
}

bool StartWinsock() {
    WSADATA data{};
    const int code = WSAStartup(MAKEWORD(1, 1), &data);
    if (code != 0)
        gui::MsgBox(StartFailureText(code, data.wVersion));
    return code == 0;
}

void StopWinsock() {
    if (WSACleanup() != 0)
        gui::MsgBox("Winsocks clean up failed. Error Number:[" + std::to_string(WSAGetLastError()));
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
