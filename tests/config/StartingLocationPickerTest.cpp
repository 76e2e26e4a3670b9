#include "config/frmStartingLocationPicker.h"

#include "Configurator.h"
#include "support/Keyboard.h"

#include <cmath>

using config::Cell;

namespace {

std::string TextOf(const RECT& r) {
    return std::to_string(r.left) + " " + std::to_string(r.top) + " " + std::to_string(r.right) + " " +
           std::to_string(r.bottom);
}

TEST(MapPlacement, CellsAndPointsOfThePicture) {
    const std::tuple<POINT, Cell, Cell> cells[] = {
        {{0, 400}, {311, 391}, {0, 0}},     {{0, 0}, {311, 391}, {0, 391}},
        {{200, 400}, {311, 391}, {311, 0}}, {{199, 399}, {311, 391}, {309, 0}},
        {{100, 100}, {99, 99}, {49, 74}},   {{-1, 401}, {99, 99}, {-1, -1}},
        {{50, 50}, {0, 0}, {0, 0}}};
    for (const auto& [point, highest, cell] : cells)
        EXPECT_EQ(config::CellAt(point, {200, 400}, highest), cell) << point.x << ' ' << point.y;
    EXPECT_EQ(config::CellAt({1, 1}, {0, 0}, {9, 9}), Cell{});

    const RECT bounds{10, 20, 210, 420};
    const std::tuple<double, double, Cell, POINT> points[] = {
        {0, 0, {100, 100}, {10, 420}},      {100, 100, {100, 100}, {210, 20}},
        {25, 75, {100, 100}, {60, 120}},    {-10, 3, {100, 100}, {-10, 408}},
        {5, 5, {0, 100}, {10, 20}},         {5, 5, {100, 0}, {10, 20}},
        {-1e300, 0, {9, 9}, {-32768, 420}}, {0, -1.0 / 0.0, {9, 9}, {10, 32767}}};
    for (const auto& [x, y, highest, expected] : points) {
        const POINT point = config::PointOf(x, y, bounds, highest);
        EXPECT_EQ(point.x, expected.x) << x;
        EXPECT_EQ(point.y, expected.y) << y;
    }
    EXPECT_EQ(TextOf(config::FitInto(bounds, {50, 50})), "10 120 210 320");
    EXPECT_EQ(TextOf(config::FitInto(bounds, {1000, 4000})), "60 20 160 420");
    EXPECT_EQ(TextOf(config::FitInto(bounds, {0, 0})), TextOf(bounds));
}

TEST(MapPlacement, ZoomsAroundAPointAndKeepsTheWindowCovered) {
    const RECT window{10, 20, 210, 420};
    const std::tuple<const char*, RECT, std::string> cases[] = {
        {"around a corner", config::Zoomed(window, window, {10, 20}, 2, 9999), "10 20 410 820"},
        {"around the middle", config::Zoomed(window, window, {110, 220}, 2, 9999), "-90 -180 310 620"},
        {"no smaller than the window", config::Zoomed(window, window, {50, 60}, 0.5, 9999), "10 20 210 420"},
        {"no larger than is useful", config::Zoomed(window, window, {10, 20}, 9, 300), "10 20 310 620"},
        {"back over the edge", config::Zoomed({10, 20, 410, 820}, window, {210, 420}, 0.6, 9999),
         "10 20 250 500"},
        {"in view already", config::BroughtIntoView({10, 20, 410, 820}, window, {100, 200}), "10 20 410 820"},
        {"to the right", config::BroughtIntoView({10, 20, 410, 820}, window, {300, 200}), "-130 20 270 820"},
        {"not over the edge", config::BroughtIntoView({10, 20, 410, 820}, window, {410, 820}),
         "-190 -380 210 420"},
    };
    for (const auto& [what, place, expected] : cases)
        EXPECT_EQ(TextOf(place), expected) << what;
}

class StartingLocationPicker : public Configurator {
protected:
    StartingLocationPicker() {
        // Two pixels wide and one high; a file that is no picture; no picture at all.
        support::WriteFile(
            program / "kTools\\maps\\wide.gif",
            std::string("GIF89a\2\0\1\0\x80\0\0\xff\0\0\0\0\xff,\0\0\0\0\2\0\1\0\0\2\2\4\x0a\0;", 35));
        support::WriteFile(program / "kTools\\maps\\fake.gif", "This is no picture.");
        support::WriteFile(
            program / "kTools\\databases\\MapInfo.txt",
            "wide.map,101,51\r\n\r\nfake.map,11,21\nnone.map,1,1\rwide.map,7,7\nlast.map,31,31");
        Open("DefaultMap=here\r\n");
    }

    void Import(const std::string& map, std::int16_t x, std::int16_t y) {
        picker.Unload();
        picker.Load();
        picker.ImportLocationData(map, x, y);
        picture = picker.imgMap.Bounds();
        w = picture.right - picture.left;
        h = picture.bottom - picture.top;
        half = picker.shpCurrentLocation.Width() / 2;
    }
    /// OK's state, the marker's, and the marker's place on the picture.
    std::string State() const {
        const gui::Shape& marker = picker.shpCurrentLocation;
        return std::string(picker.cmdOK.Enabled() ? "OK " : "-- ") +
               (marker.Visible() ? "shown " : "hidden ") + std::to_string(marker.Left() - picture.left) +
               " " + std::to_string(marker.Top() - picture.top);
    }
    std::string Result() const {
        return newPlayer.txtMapName.Text() + "," + newPlayer.txtStartingX.Text() + "," +
               newPlayer.txtStartingY.Text();
    }
    static std::string Shown(long x, long y) {
        return "OK shown " + std::to_string(x) + " " + std::to_string(y);
    }

    frmStartingLocationPicker picker{newPlayer.txtMapName, newPlayer.txtStartingX, newPlayer.txtStartingY};
    RECT picture{};
    int w = 0, h = 0, half = 0; // of the picture, and of the marker
};

TEST_F(StartingLocationPicker, ShowsTheGivenPlace) {
    Import("fake", 5, 5);
    EXPECT_EQ(picker.lstMapList.ListIndex(), 1);
    EXPECT_TRUE(picker.imgMap.Empty() && picker.lblMap.Visible());
    EXPECT_EQ(State(), Shown(std::lround(w * 0.5) - half, std::lround(h * 0.75) - half));

    // An unknown map leaves the first one; of two entries with the same name the last is chosen.
    Import("unknown", 500, 5);
    EXPECT_EQ(picker.lstMapList.ListIndex(), 0);
    EXPECT_FALSE(picker.cmdOK.Enabled() || picker.shpCurrentLocation.Visible());
    Import("wide", 500, 5);
    EXPECT_EQ(picker.lstMapList.ListIndex(), 3);
    EXPECT_EQ(w, 2 * h);
    EXPECT_FALSE(picker.imgMap.Empty() || picker.lblMap.Visible());
    Import("none", 0, 0);
    EXPECT_EQ(State(), Shown(0, 0));

    picker.Show();
    RECT seen;
    const HDC context = GetDC(picker.imgMap.Window());
    EXPECT_NE(GetClipBox(context, &seen), NULLREGION) << "something covers the picture";
    ReleaseDC(picker.imgMap.Window(), context);
}

TEST_F(StartingLocationPicker, ClicksAndTypedCellsMoveTheMarker) {
    Import("wide", 10, 10);
    const POINT clicks[] = {{0, h - 1}, {0, 0}, {w / 2, h / 4}, {w - 1, 3}};
    for (const POINT at : clicks) {
        picker.txtCurrentX.Text("999");
        EXPECT_EQ(State().substr(0, 9), "-- hidden");
        const std::string x = std::to_string(at.x * 100 / w);
        const std::string y = std::to_string((h - at.y) * 50 / h);
        SendMessageA(picker.imgMap.Window(), WM_MOUSEMOVE, 0, MAKELPARAM(at.x, at.y));
        EXPECT_EQ(picker.lblCurrentX.Caption() + "," + picker.lblCurrentY.Caption(), x + "," + y);
        SendMessageA(picker.imgMap.Window(), WM_LBUTTONDOWN, 0, MAKELPARAM(at.x, at.y));
        EXPECT_EQ(State(), Shown(at.x - half, at.y - half));
        EXPECT_EQ(picker.txtCurrentX.Text() + "," + picker.txtCurrentY.Text(), x + "," + y);
    }

    Import("wide", 0, 0);
    const std::tuple<std::string, std::string, std::string> typed[] = {
        {"100", "50", Shown(w, 0)}, {"-50", "0", Shown(-w / 2, h)},
        {"", "abc", Shown(0, h)},   {"20 cells", "0", Shown(std::lround(w * 0.2), h)},
        {"101", "0", "-- hidden"},  {"1e400", "0", "-- hidden"},
        {"0", "50.5", "-- hidden"}};
    for (const auto& [x, y, state] : typed) {
        // The box that is typed into last has the say, so a bound that is passed comes last.
        const bool xLast = std::string_view(y) == "0";
        (xLast ? picker.txtCurrentY : picker.txtCurrentX).Text(xLast ? y : x);
        (xLast ? picker.txtCurrentX : picker.txtCurrentY).Text(xLast ? x : y);
        EXPECT_EQ(State().substr(0, state.size()), state) << x << ' ' << y;
    }
    // Only its own bound counts for a box; choosing a map looks at both.
    picker.txtCurrentX.Text("101");
    picker.txtCurrentY.Text("1");
    EXPECT_TRUE(picker.cmdOK.Enabled());
    picker.lstMapList.ListIndex(0);
    EXPECT_FALSE(picker.cmdOK.Enabled());
}

TEST_F(StartingLocationPicker, ArrowKeysGoByACellAndEveryCellCanBeReachedByZooming) {
    Import("wide", 10, 10);
    picker.Show();
    const auto typed = [&] { return picker.txtCurrentX.Text() + "," + picker.txtCurrentY.Text(); };
    picker.imgMap.SetFocus();
    const std::tuple<int, std::initializer_list<int>, const char*> keys[] = {
        {VK_RIGHT, {}, "11,10"},         {VK_UP, {}, "11,11"},
        {VK_DOWN, {}, "11,10"},          {VK_LEFT, {VK_CONTROL}, "1,10"},
        {VK_LEFT, {VK_CONTROL}, "0,10"}, {VK_DOWN, {VK_CONTROL}, "0,0"},
        {VK_UP, {VK_CONTROL}, "0,10"}};
    for (const auto& [key, held, expected] : keys) {
        support::PressKey(key, held);
        EXPECT_EQ(typed(), expected);
        EXPECT_EQ(GetFocus(), picker.imgMap.Window());
    }
    EXPECT_EQ(State(), Shown(-half, std::lround(h * 0.8) - half));
    const POINT at{w / 3, h / 3};
    POINT mouse = at;
    ClientToScreen(picker.imgMap.Window(), &mouse);
    std::string before;
    for (int notch = 0; notch < 30; ++notch)
        SendMessageA(picker.imgMap.Window(), WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA),
                     MAKELPARAM(mouse.x, mouse.y));
    for (int x = at.x; x < at.x + 40; ++x) {
        SendMessageA(picker.imgMap.Window(), WM_LBUTTONDOWN, 0, MAKELPARAM(x, at.y));
        const int cell = std::stoi(picker.txtCurrentX.Text());
        EXPECT_TRUE(before.empty() || cell - std::stoi(before) <= 1) << "a cell cannot be reached";
        before = picker.txtCurrentX.Text();
    }
    EXPECT_NEAR(std::stoi(before), 100 / 3 + 2, 2) << "the place under the mouse stays there";
    support::PressKey(VK_RIGHT, {});
    EXPECT_TRUE(picker.shpCurrentLocation.Visible());
}

TEST_F(StartingLocationPicker, FitsASmallScreen) {
    Import("wide", 10, 10);
    RECT window;
    GetWindowRect(picker.Window(), &window);
    const LONG height = window.bottom - window.top - 100;
    picker.TakeHeight(height);
    picker.lstMapList.ListIndex(0);
    GetWindowRect(picker.Window(), &window);
    EXPECT_EQ(window.bottom - window.top, height);
    RECT client;
    GetClientRect(picker.Window(), &client);
    const RECT frame = picker.fraMapPreview.Bounds();
    const RECT map = picker.imgMap.Bounds();
    const RECT ok = picker.cmdOK.Bounds();
    EXPECT_TRUE(map.bottom <= frame.bottom && frame.bottom <= picker.lblAhaha.Bounds().top);
    EXPECT_LT(ok.bottom, client.bottom);
}

TEST_F(StartingLocationPicker, HandsThePlaceToTheConfigurator) {
    const auto pickWith = [this](const std::function<void(HWND)>& work) {
        const support::Meanwhile meanwhile([&] {
            if (const HWND window = FindWindowA(nullptr, "Kerno Tools :: Starting Location Picker");
                IsWindowVisible(window))
                work(window);
        });
        newPlayer.cmdMapPicker.Press();
        EXPECT_TRUE(support::Settle());
    };
    newPlayer.txtStartingX.Text("99999");
    pickWith([](HWND window) {
        EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_frmStartingLocationPicker_cmdOK)));
        EXPECT_EQ(GetDlgItemInt(window, IDC_frmStartingLocationPicker_txtCurrentX, nullptr, TRUE), 32767u);
        SendDlgItemMessageA(window, IDC_frmStartingLocationPicker_cmdCancel, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(Result(), "here,99999,");
    pickWith([](HWND window) {
        SetDlgItemTextA(window, IDC_frmStartingLocationPicker_txtCurrentY, "12 or so");
        SetDlgItemTextA(window, IDC_frmStartingLocationPicker_txtCurrentX, "-3.5");
        SendDlgItemMessageA(window, IDC_frmStartingLocationPicker_cmdOK, BM_CLICK, 0, 0);
    });
    EXPECT_EQ(Result(), "wide,-3.5,12");
    EXPECT_EQ(Kerno(), "DefaultMap=here\r\n");
    DeleteFileA((program / "kTools\\databases\\MapInfo.txt").c_str());
    Import("wide", 1, 1);
    EXPECT_EQ(picker.lstMapList.ListCount(), 0);
    EXPECT_EQ(State(), "-- hidden 0 0");
}

} // namespace
