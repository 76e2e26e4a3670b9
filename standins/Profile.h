#pragma once

#include <windows.h>

#include <vector>

namespace standin {

/// What makes a stand-in the login, the character or the zone server; each program brings its own.
struct Profile {
    const char* name;       ///< "Login"
    const char* executable; ///< titles of dialogs that name the server
    const char* mainWindowClass;
    POINT corner;                         ///< where its window comes up, so that the three stand side by side
    COLORREF colour;                      ///< of its icon and its headline
    std::vector<const char*> startLines;  ///< written one after the other at the start
    std::vector<const char*> randomLines; ///< "%d" becomes a number
    bool hasPlayers;                      ///< title with uptime and player count, text field and button
    bool hasBroadcastWindow;              ///< a small window of its own with the "Send Message" button
};

extern const Profile kProfile;

} // namespace standin
