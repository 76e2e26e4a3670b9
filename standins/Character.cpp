#include "Profile.h"

const standin::Profile standin::kProfile{
    "Character",
    "kCharacter.exe",
    "TForm1",
    {510, 20},
    RGB(52, 96, 160),
    {"Reading configuration", "Connected to the character database", "1807 characters in 42 guilds",
     "Listening on port 6121", "Zone server connected", "Ready."},
    {"Character %d selected", "Character %d created", "Saved character %d", "Guild %d updated",
     "Party %d disbanded", "Handed character %d over to the zone server"},
    false,
    true};
