#include "config/fraNewPlayer.h"

#include "config/frmStartingLocationPicker.h"
#include "gui/FormSlot.h"

gui::Task<> fraNewPlayer::cmdMapPicker_Click() {
    gui::Form& form = Panel().Parent();
    gui::Local<frmStartingLocationPicker> picker(txtMapName, txtStartingX, txtStartingY);
    picker->Load(&form, true);
    picker->ImportLocationData(txtMapName.Text(), config::CoordinateOf(txtStartingX.Text()),
                               config::CoordinateOf(txtStartingY.Text()));
    co_await picker->ShowModal(form);
}
