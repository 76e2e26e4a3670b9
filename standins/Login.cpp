#include "Profile.h"

const standin::Profile standin::kProfile{
    "Login",
    "kLogin.exe",
    "TForm1",
    {20, 20},
    RGB(46, 125, 90),
    {"Reading configuration", "Connected to the account database", "642 accounts, 3 of them locked",
     "Listening on port 6900", "Character server connected", "Ready."},
    {"Account %d logged in", "Account %d logged out", "Account %d: wrong password",
     "Handed account %d over to the character server", "Saved the state of %d accounts"},
    false,
    false};
