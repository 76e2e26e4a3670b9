#include "Profile.h"

const standin::Profile standin::kProfile{
    "Zone",
    "kZone.exe",
    "TfrmMain",
    {20, 370},
    RGB(168, 84, 36),
    {"Reading configuration", "Loading 388 maps", "Loading 1041 monsters", "Loading 2215 items",
     "Loading 96 scripts", "Listening on port 5121", "Ready."},
    {"Character %d entered the map", "Character %d left the map", "Monster %d was defeated",
     "Character %d reached a new level", "Trade %d concluded", "Saved %d characters"},
    true,
    false};
