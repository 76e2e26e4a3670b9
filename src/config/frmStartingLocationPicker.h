#pragma once

#include "config/clsMapInfo.h"
#include "config/frmStartingLocationPicker.ids.h"
#include "config/MapPlacement.h"
#include "gui/Lists.h"
#include "gui/Picture.h"
#include "gui/Text.h"

/// Chooses the cell of a map at which new players start, on the map's picture or by typing. OK writes the
/// choice into the boxes that the picker was made for. A click puts the middle of the marker on its point;
/// typed coordinates put the marker's top-left corner there.
class frmStartingLocationPicker final : public gui::Form {
public:
    /// The boxes take the result of OK and outlive the picker.
    frmStartingLocationPicker(gui::TextBox& mapName, gui::TextBox& startingX, gui::TextBox& startingY)
        : Form(IDD_frmStartingLocationPicker), resultMapName_(mapName), resultX_(startingX),
          resultY_(startingY) {}

    gui::ListBox lstMapList{*this, IDC_frmStartingLocationPicker_lstMapList,
                            &frmStartingLocationPicker::lstMapList_Click};
    gui::Frame fraMapPreview{*this, IDC_frmStartingLocationPicker_fraMapPreview};
    gui::Picture imgMap{*this,
                        IDC_frmStartingLocationPicker_imgMap,
                        &frmStartingLocationPicker::imgMap_MouseDown,
                        &frmStartingLocationPicker::imgMap_MouseMove,
                        &frmStartingLocationPicker::imgMap_KeyDown,
                        &frmStartingLocationPicker::imgMap_Wheel};
    gui::Shape shpCurrentLocation{*this, IDC_frmStartingLocationPicker_shpCurrentLocation};
    gui::Label lblMap{*this, IDC_frmStartingLocationPicker_lblMap};
    gui::TextBox txtCurrentX{*this, IDC_frmStartingLocationPicker_txtCurrentX,
                             &frmStartingLocationPicker::txtCurrentX_Change};
    gui::TextBox txtCurrentY{*this, IDC_frmStartingLocationPicker_txtCurrentY,
                             &frmStartingLocationPicker::txtCurrentY_Change};
    gui::Label lblAhaha{*this, IDC_frmStartingLocationPicker_lblAhaha};
    gui::Label lblCurrentX{*this, IDC_frmStartingLocationPicker_lblCurrentX};
    gui::Label lblCurrentY{*this, IDC_frmStartingLocationPicker_lblCurrentY};
    gui::Label lblX{*this, IDC_frmStartingLocationPicker_lblX};
    gui::Label lblY{*this, IDC_frmStartingLocationPicker_lblY};
    gui::CommandButton cmdOK{*this, IDC_frmStartingLocationPicker_cmdOK,
                             &frmStartingLocationPicker::cmdOK_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmStartingLocationPicker_cmdCancel,
                                 &frmStartingLocationPicker::cmdCancel_Click};

    /// Fills the list and shows the given place; called once, between loading and showing. A map that is not
    /// in the list leaves the first one chosen.
    void ImportLocationData(const std::string& mapName, std::int16_t x, std::int16_t y);

    /// Makes the window no higher than that, in pixels; list and picture give way.
    void TakeHeight(LONG height);

private:
    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void lstMapList_Click();
    void imgMap_MouseDown(gui::MouseButton button, int x, int y);
    void imgMap_MouseMove(int x, int y);
    /// The arrow keys go on by a cell, with Ctrl by ten; plus and minus zoom.
    void imgMap_KeyDown(int& key);
    void imgMap_Wheel(int notches, POINT at);
    void txtCurrentX_Change();
    void txtCurrentY_Change();
    void cmdOK_Click();
    void cmdCancel_Click() { Unload(); }

    void ShowMap(const std::string& mapName);
    void UseMap(const std::string& mapName);
    config::Cell CellUnder(int x, int y) const;
    void AcceptTyped(bool acceptable);
    void CentreMarkerOn(POINT point);
    void ShowMarker(bool shown);
    void Zoom(int notches, POINT around);
    void Lay(const RECT& whole);
    POINT TypedPoint() const;

    gui::TextBox& resultMapName_;
    gui::TextBox& resultX_;
    gui::TextBox& resultY_;
    clsMapInfo mapInfo_;
    config::Cell max_;
    RECT pictureArea_{};
    RECT whole_{}; ///< where the whole picture lies in the form; more than is seen of it after zooming
    bool centred_ = false; ///< the marker stands with its middle on the place
};
