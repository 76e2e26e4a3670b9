#pragma once

#include "Hands.h"

#include <string>
#include <vector>

/// One picture: how it is come by from the window before it, and what is opened from it in turn.
struct Stop {
    std::string name;
    Act open;
    std::vector<Stop> next = {};
    /// What is done in the window before its pictures are taken.
    Act prepare = [](HWND) {};
    /// The only page that a picture is taken of, counted from 0; all of them for -1.
    int page = -1;
    /// How it is left, when closing the window is not the way.
    Act leave = {};
    /// Nothing opens: the picture is of the window before, as `open` leaves it.
    bool same = false;
};

// The stops with most to do.
Stop ServerStatus();
Stop ControlPanel();
/// Its first account is a game master's.
Stop AccountEditor();
/// A server of today refuses at first, and the wizard asks.
Stop SetUpOfToday();
/// What a newcomer sees. Nothing is left of the databases then.
Stop FreshSetUp();
