#pragma once

#include "servers/Control.h"
#include "servers/Detection.h"
#include "servers/Dialogs.h"
#include "servers/ForeignWindows.h"
#include "servers/Messages.h"
#include "servers/Ownership.h"
#include "servers/Priority.h"
#include "servers/Servers.h"
#include "servers/ZonePause.h"

/// Everything that is done to the servers, and each procedure under the name of its server.
namespace modServerControl {

inline bool IsLoginServerWindow(HWND window) {
    return IsServerWindow(Server::Login, window);
}
inline bool IsCharacterServerWindow(HWND window) {
    return IsServerWindow(Server::Character, window);
}
inline bool IsZoneServerWindow(HWND window) {
    return IsServerWindow(Server::Zone, window);
}

inline bool IsLoginAppWindow(HWND window) {
    return IsAppWindow(Server::Login, window);
}
inline bool IsCharacterAppWindow(HWND window) {
    return IsAppWindow(Server::Character, window);
}
inline bool IsZoneAppWindow(HWND window) {
    return IsAppWindow(Server::Zone, window);
}

inline bool IsLoginRunning() {
    return IsRunning(Server::Login);
}
inline bool IsCharacterRunning() {
    return IsRunning(Server::Character);
}
inline bool IsZoneRunning() {
    return IsRunning(Server::Zone);
}

inline std::int16_t SetLoginPriority(int index) {
    return SetPriority(Server::Login, index);
}
inline std::int16_t SetCharacterPriority(int index) {
    return SetPriority(Server::Character, index);
}
inline std::int16_t SetZonePriority(int index) {
    return SetPriority(Server::Zone, index);
}

inline std::int16_t GetLoginPriority() {
    return GetPriority(Server::Login);
}
inline std::int16_t GetCharacterPriority() {
    return GetPriority(Server::Character);
}
inline std::int16_t GetZonePriority() {
    return GetPriority(Server::Zone);
}

inline std::string ReadLoginLog() {
    return ReadLog(Server::Login);
}
inline std::string ReadCharacterLog() {
    return ReadLog(Server::Character);
}
inline std::string ReadZoneLog() {
    return ReadLog(Server::Zone);
}

inline std::int16_t StartLoginServer() {
    return Start(Server::Login);
}
inline std::int16_t StartCharacterServer() {
    return Start(Server::Character);
}
inline std::int16_t StartZoneServer() {
    return Start(Server::Zone);
}

inline gui::Task<std::int16_t> ShutdownLoginServer() {
    return Shutdown(Server::Login);
}
inline gui::Task<std::int16_t> ShutdownCharacterServer() {
    return Shutdown(Server::Character);
}
inline gui::Task<std::int16_t> ShutdownZoneServer() {
    return Shutdown(Server::Zone);
}

inline std::int16_t ShowLoginServer() {
    return Show(Server::Login);
}
inline std::int16_t ShowCharacterServer() {
    return Show(Server::Character);
}
inline std::int16_t ShowZoneServer() {
    return Show(Server::Zone);
}

inline std::int16_t HideLoginServer() {
    return Hide(Server::Login);
}
inline std::int16_t HideCharacterServer() {
    return Hide(Server::Character);
}
inline std::int16_t HideZoneServer() {
    return Hide(Server::Zone);
}

} // namespace modServerControl
