#include "config/NewPlayerPage.h"

#include "config/frmStartingLocationPicker.h"

void NewPlayerPage::cmdMapPicker_Click() {
    gui::Form& form = Panel().Parent();
    frmStartingLocationPicker picker(txtMapName, txtStartingX, txtStartingY);
    picker.Load(&form, true);
    picker.ImportLocationData(txtMapName.Text(), config::CoordinateOf(txtStartingX.Text()),
                              config::CoordinateOf(txtStartingY.Text()));
    picker.ShowModalNow(form);
}
