#include "config/frmStartingLocationPicker.h"

#include "common/Files.h"
#include "common/Numbers.h"
#include "common/RuntimeError.h"

using common::Val;

void frmStartingLocationPicker::Form_Load() {
    mapInfo_.MapInfoPath(common::ProgramFolder() + "\\kTools\\databases\\");
    mapInfo_.ReturnMapList = [this](const std::string& name, std::int16_t, std::int16_t) {
        lstMapList.AddItem(name);
    };
    pictureArea_ = imgMap.Bounds();
    // The label lies under the picture, which takes clicks and the marker without one too.
    imgMap.TextWithoutPicture(lblMap.Caption());
    ShowMap({});
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
    const RECT bounds = imgMap.Bounds();
    const POINT point = config::PointOf(x, y, bounds, max_);
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
    lblMap.Visible(imgMap.Empty());
}

config::Cell frmStartingLocationPicker::CellUnder(int x, int y) const {
    const RECT bounds = imgMap.Bounds();
    return config::CellAt({x, y}, {bounds.right - bounds.left, bounds.bottom - bounds.top}, max_);
}

void frmStartingLocationPicker::imgMap_MouseMove(int x, int y) {
    const config::Cell cell = CellUnder(x, y);
    lblCurrentX.Caption(std::to_string(cell.x));
    lblCurrentY.Caption(std::to_string(cell.y));
}

void frmStartingLocationPicker::imgMap_MouseDown(gui::MouseButton /*button*/, int x, int y) {
    shpCurrentLocation.Visible(true);
    cmdOK.Enabled(true);
    const config::Cell cell = CellUnder(x, y);
    // The boxes move the marker to the cell's corner; the click has the last word.
    txtCurrentX.Text(std::to_string(cell.x));
    txtCurrentY.Text(std::to_string(cell.y));
    const RECT bounds = imgMap.Bounds();
    CentreMarkerOn({bounds.left + x, bounds.top + y});
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
    shpCurrentLocation.Visible(acceptable);
    if (!acceptable)
        return;
    const POINT corner =
        config::PointOf(Val(txtCurrentX.Text()), Val(txtCurrentY.Text()), imgMap.Bounds(), max_);
    shpCurrentLocation.Move(corner.x, corner.y);
}

void frmStartingLocationPicker::CentreMarkerOn(POINT point) {
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
