#include "servers/Messages.h"

#include "common/Text.h"
#include "servers/Detection.h"
#include "servers/ForeignWindows.h"

#include <algorithm>
#include <map>

namespace modServerControl {

namespace {

/// The texts of the boxes that refused to be emptied, as those of servers with more rights do.
std::map<HWND, std::string>& Unemptied() {
    static std::map<HWND, std::string> texts;
    return texts;
}

/// What of `text` was not read before, when `before` was read.
std::string_view NewPart(std::string_view before, std::string_view text) {
    if (before.empty())
        return text;
    if (text.starts_with(before))
        return text.substr(before.size());
    // A server cuts the beginning of a box that nobody empties.
    constexpr std::size_t kEnough = 1000;
    const std::string_view end = before.substr(before.size() - std::min(before.size(), kEnough));
    const std::size_t found = text.rfind(end);
    return found == text.npos ? text : text.substr(found + end.size());
}

/// Fills `text`, which is as long as there is room, with that of the box, and gives it its length. False when
/// there is none.
bool TakeText(HWND box, std::string& text) {
    const auto ask = [&] { return Ask(box, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data())); };
    auto copied = ask();
    // Wine 10 does not bring the question to the window when the room for the answer does not fit on its
    // stack.
    constexpr std::size_t kRoomOnStack = std::size_t{128} << 10;
    if (!copied && text.size() > kRoomOnStack) {
        text.resize(kRoomOnStack);
        copied = ask();
        // What fills the room may not be all of it, and the box is emptied next.
        if (copied && *copied + 1 >= static_cast<LRESULT>(kRoomOnStack))
            return false;
    }
    if (!copied || *copied <= 0)
        return false;
    text.resize(std::min(static_cast<std::size_t>(*copied), text.size() - 1));
    return true;
}

} // namespace

std::string ReadLog(Server server) {
    const HWND window = MainWindow(server);
    const HWND box = window ? FindWindowExA(window, nullptr, kMessageBoxClass, nullptr) : nullptr;
    if (!box)
        return {};
    const auto length = Ask(box, WM_GETTEXTLENGTH, 0, 0);
    if (!length || *length <= 0)
        return {};
    std::string text(std::min(static_cast<std::size_t>(*length), kMostText / 2) * 2 + 1, '\0');
    if (!TakeText(box, text))
        return {};
    auto& kept = Unemptied();
    std::erase_if(kept, [](const auto& each) { return !IsWindow(each.first); });
    const std::string fresh(NewPart(kept[box], text));
    const auto emptied = Ask(box, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(""));
    if (emptied && *emptied)
        kept.erase(box);
    else
        kept[box] = std::move(text);
    return common::Trim(fresh);
}

std::int16_t TypeZoneMessage(std::string_view text) {
    const HWND window = MainWindow(Server::Zone);
    const HWND field = window ? FindWindowExA(window, nullptr, kTextFieldClass, nullptr) : nullptr;
    const auto typed = [field](char c) {
        return PostMessageA(field, WM_CHAR, static_cast<unsigned char>(c), 0) != FALSE;
    };
    return field && std::ranges::all_of(text, typed) ? 1 : 0;
}

std::int16_t ClickServerButton(const std::string& caption) {
    // The button that sends what was typed at the zone server is the character server's, in a window of the
    // class that the zone server's main window has.
    const auto press = [&](HWND window) {
        const HWND button = FindWindowExA(window, nullptr, kButtonClass, caption.c_str());
        if (!button)
            return false;
        PostMessageA(button, WM_LBUTTONDOWN, 0, 0);
        return PostMessageA(button, WM_LBUTTONUP, 0, 0) != FALSE;
    };
    return FindServerWindow(Server::Character, ComponentOf(Server::Zone).mainWindowClass, press) ? 1 : 0;
}

std::int16_t SendPlayerMessage(std::string_view text) {
    const bool typed = TypeZoneMessage(text) == 1;
    const bool pressed = ClickServerButton("Send Message") == 1;
    return typed && pressed ? 1 : 0;
}

std::string GetZoneTitle() {
    return ReadFullTitle(MainWindow(Server::Zone));
}

} // namespace modServerControl
