#include "config/frmStartingLocationPicker.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"
#include "gui/Placement.h"

#include <algorithm>
#include <cmath>

using common::Val;

void frmStartingLocationPicker::Form_Load() {
    mapInfo_.MapInfoPath(common::ProgramFolder() + "\\kTools\\databases\\");
    mapInfo_.ReturnMapList = [this](const std::string& name, std::int16_t, std::int16_t) {
        lstMapList.AddItem(name);
    };
    pictureArea_ = imgMap.Bounds();
    const RECT work = gui::WorkAreaAround(Window());
    TakeHeight(work.bottom - work.top);
    // The label lies under the picture, which takes clicks and the marker without one too.
    imgMap.TextWithoutPicture(lblMap.Caption());
    ShowMap({});
}

void frmStartingLocationPicker::TakeHeight(LONG height) {
    RECT window;
    GetWindowRect(Window(), &window);
    const LONG excess = window.bottom - window.top - height;
    if (excess <= 0)
        return;
    const auto change = [](gui::Control& control, LONG down, LONG taller) {
        const RECT place = control.Bounds();
        control.Move(place.left, place.top + down, place.right - place.left,
                     place.bottom - place.top + taller);
    };
    for (gui::Control* higher : std::initializer_list<gui::Control*>{&lstMapList, &fraMapPreview})
        change(*higher, 0, -excess);
    for (gui::Control* below :
         std::initializer_list<gui::Control*>{&lblAhaha, &lblCurrentX, &lblCurrentY, &lblX, &txtCurrentX,
                                              &lblY, &txtCurrentY, &cmdOK, &cmdCancel})
        change(*below, -excess, 0);
    change(lblMap, -excess / 2, 0);
    pictureArea_.bottom -= excess;
    SetWindowPos(Window(), nullptr, 0, 0, window.right - window.left, height,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void frmStartingLocationPicker::ImportLocationData(const std::string& mapName, std::int16_t x,
                                                   std::int16_t y) {
    txtCurrentX.Text(std::to_string(x));
    txtCurrentY.Text(std::to_string(y));
    mapInfo_.GetMapList();
    UseMap(mapName);
    if (lstMapList.ListCount() > 0) {
        lstMapList.ListIndex(0);
        for (int index = lstMapList.ListCount() - 1; index >= 0; --index)
            if (lstMapList.List(index) == mapName) {
                lstMapList.ListIndex(index);
                break;
            }
    }
    const POINT point = config::PointOf(x, y, whole_, max_);
    if (max_.x != 0 && max_.y != 0)
        CentreMarkerOn(point);
    else
        shpCurrentLocation.Move(point.x, point.y);
}

void frmStartingLocationPicker::lstMapList_Click() {
    if (lstMapList.ListCount() == 0)
        return;
    const std::string mapName = lstMapList.List(lstMapList.ListIndex());
    UseMap(mapName);
    // The picture first, as its size says where the marker belongs.
    ShowMap(mapName);
    if (max_.x == 0 || max_.y == 0)
        shpCurrentLocation.Move(imgMap.Bounds().left, imgMap.Bounds().top);
    else
        AcceptTyped(Val(txtCurrentX.Text()) <= max_.x && Val(txtCurrentY.Text()) <= max_.y);
}

void frmStartingLocationPicker::UseMap(const std::string& mapName) {
    mapInfo_.MapName(mapName);
    max_ = {mapInfo_.GetMaxX(), mapInfo_.GetMaxY()};
}

void frmStartingLocationPicker::ShowMap(const std::string& mapName) {
    const std::string path = common::ProgramFolder() + "\\kTools\\maps\\" + mapName + ".gif";
    imgMap.Clear();
    try {
        if (common::FileExists(path))
            imgMap.Load(path);
    } catch (const RuntimeError&) {
        // A picture that cannot be read is as good as none: the place can still be typed.
    }
    const RECT place = config::FitInto(pictureArea_, imgMap.PictureSize());
    imgMap.Move(place.left, place.top, place.right - place.left, place.bottom - place.top);
    whole_ = place;
    lblMap.Visible(imgMap.Empty());
}

config::Cell frmStartingLocationPicker::CellUnder(int x, int y) const {
    const RECT bounds = imgMap.Bounds();
    return config::CellAt({bounds.left + x - whole_.left, bounds.top + y - whole_.top},
                          {whole_.right - whole_.left, whole_.bottom - whole_.top}, max_);
}

void frmStartingLocationPicker::imgMap_MouseMove(int x, int y) {
    const config::Cell cell = CellUnder(x, y);
    lblCurrentX.Caption(std::to_string(cell.x));
    lblCurrentY.Caption(std::to_string(cell.y));
}

void frmStartingLocationPicker::imgMap_MouseDown(gui::MouseButton /*button*/, int x, int y) {
    cmdOK.Enabled(true);
    const config::Cell cell = CellUnder(x, y);
    // The boxes move the marker to the cell's corner; the click has the last word.
    txtCurrentX.Text(std::to_string(cell.x));
    txtCurrentY.Text(std::to_string(cell.y));
    const RECT bounds = imgMap.Bounds();
    CentreMarkerOn({bounds.left + x, bounds.top + y});
    shpCurrentLocation.Visible(true);
}

// Each box is judged by its own bound only, and only by the upper one: what a negative coordinate means is
// the zone server's business.
void frmStartingLocationPicker::txtCurrentX_Change() {
    AcceptTyped(Val(txtCurrentX.Text()) <= max_.x);
}
void frmStartingLocationPicker::txtCurrentY_Change() {
    AcceptTyped(Val(txtCurrentY.Text()) <= max_.y);
}

void frmStartingLocationPicker::AcceptTyped(bool acceptable) {
    cmdOK.Enabled(acceptable);
    ShowMarker(acceptable);
    if (!acceptable)
        return;
    const POINT corner = TypedPoint();
    centred_ = false;
    shpCurrentLocation.Move(corner.x, corner.y);
}

POINT frmStartingLocationPicker::TypedPoint() const {
    return config::PointOf(Val(txtCurrentX.Text()), Val(txtCurrentY.Text()), whole_, max_);
}

/// A place that zooming has moved out of sight has no marker.
void frmStartingLocationPicker::ShowMarker(bool shown) {
    const RECT seen = imgMap.Bounds();
    const bool inSight = EqualRect(&seen, &whole_) || PtInRect(&seen, TypedPoint());
    shpCurrentLocation.Visible(shown && inSight);
}

void frmStartingLocationPicker::Lay(const RECT& whole) {
    whole_ = whole;
    const RECT seen = imgMap.Bounds();
    RECT place = whole;
    OffsetRect(&place, -seen.left, -seen.top);
    imgMap.Lay(place);
    const POINT point = TypedPoint();
    if (centred_)
        CentreMarkerOn(point);
    else
        shpCurrentLocation.Move(point.x, point.y);
    ShowMarker(cmdOK.Enabled());
}

void frmStartingLocationPicker::Zoom(int notches, POINT around) {
    // Closer than that no cell needs to be.
    constexpr LONG kLargestCell = 16;
    constexpr double kFactor = 1.25;
    if (max_.x > 0 && max_.y > 0 && !imgMap.Empty())
        Lay(config::Zoomed(whole_, imgMap.Bounds(), around, std::pow(kFactor, notches),
                           max_.x * kLargestCell));
}

void frmStartingLocationPicker::imgMap_Wheel(int notches, POINT at) {
    const RECT seen = imgMap.Bounds();
    Zoom(notches, {seen.left + at.x, seen.top + at.y});
}

void frmStartingLocationPicker::imgMap_KeyDown(int& key) {
    constexpr struct {
        int key, x, y, zoom;
    } kKeys[] = {{VK_LEFT, -1, 0, 0},     {VK_RIGHT, 1, 0, 0},     {VK_UP, 0, 1, 0},
                 {VK_DOWN, 0, -1, 0},     {VK_ADD, 0, 0, 1},       {VK_OEM_PLUS, 0, 0, 1},
                 {VK_SUBTRACT, 0, 0, -1}, {VK_OEM_MINUS, 0, 0, -1}};
    const auto used = std::ranges::find(kKeys, key, [](const auto& each) { return each.key; });
    if (used == std::end(kKeys) || max_.x <= 0 || max_.y <= 0)
        return;
    key = 0;
    if (used->zoom)
        return Zoom(used->zoom, TypedPoint());
    const int step = GetKeyState(VK_CONTROL) < 0 ? 10 : 1;
    const int x = std::clamp(config::CoordinateOf(txtCurrentX.Text()) + used->x * step, 0, int{max_.x});
    const int y = std::clamp(config::CoordinateOf(txtCurrentY.Text()) + used->y * step, 0, int{max_.y});
    txtCurrentX.Text(std::to_string(x));
    txtCurrentY.Text(std::to_string(y));
    cmdOK.Enabled(true);
    centred_ = true;
    Lay(config::BroughtIntoView(whole_, imgMap.Bounds(), TypedPoint()));
}

void frmStartingLocationPicker::CentreMarkerOn(POINT point) {
    centred_ = true;
    shpCurrentLocation.Move(point.x - shpCurrentLocation.Width() / 2,
                            point.y - shpCurrentLocation.Height() / 2);
}

void frmStartingLocationPicker::cmdOK_Click() {
    // With no map to choose from, the name that is there already is the better one.
    if (lstMapList.ListIndex() >= 0)
        resultMapName_.Text(lstMapList.List(lstMapList.ListIndex()));
    resultX_.Text(common::NumberText(Val(txtCurrentX.Text())));
    resultY_.Text(common::NumberText(Val(txtCurrentY.Text())));
    Unload();
}
