#pragma once

#include <windows.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>

/// Dialogs of the servers that were told to close and are still there.
namespace modServerControl {

struct StubbornDialog {
    HWND window = nullptr;
    std::string title;
    std::string program; ///< file name of the executable that shows it
    std::chrono::seconds age{};
};

/// What a user is told about it: "kZone.exe shows "..." since 14:03:10, and it does not close".
std::string TextOf(const StubbornDialog& dialog);

/// Keeps an eye on the dialogs that do not go. Times are milliseconds since the system was started.
class StubbornDialogs {
public:
    /// The dialog was told to close, or keeps somebody waiting, and is still there.
    void Meet(HWND dialog, ULONGLONG now);

    /// It has gone.
    void Forget(HWND dialog) { met_.erase(dialog); }

    /// True when the dialog's text is to be logged: at the first call, and then after pauses of 1, 2, 4 and
    /// so on up to 60 seconds.
    bool MayLog(HWND dialog, ULONGLONG now);

    /// True once the dialog has been there for 30 seconds: nobody waits for it any longer.
    bool IsGivenUp(HWND dialog, ULONGLONG now) const;

    /// The one that has been there for longest, when that is two seconds at least and it is still there.
    std::optional<StubbornDialog> Oldest(ULONGLONG now);

private:
    struct Meeting {
        ULONGLONG first;
        ULONGLONG logAgain = 0;
        ULONGLONG pause = 0;
    };

    Meeting& Known(HWND dialog, ULONGLONG now);

    std::map<HWND, Meeting> met_;
};

/// The tool's own.
StubbornDialogs& Stubborn();

} // namespace modServerControl
