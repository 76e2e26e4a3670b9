#pragma once

#include "gui/FormSlot.h"
#include "supervision/frmServerControl.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

/// The control panel and the classes behind it.
class Panel : public testing::Test, protected support::Surroundings {
protected:
    Panel() {
        support::WriteFile(kTools.INIPath(), "[ServerControl]\r\n");
        SetAddress();
    }
};
