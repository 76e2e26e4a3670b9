#pragma once

#include "gui/FormSlot.h"
#include "supervision/frmServerControl.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

// What the tests of the panel all speak of.
using namespace settings::key;
using namespace supervision;
using modServerControl::kServers;
using modServerControl::Server;
using standin::Command;
using support::WaitUntil;

/// The zone server's pause takes its time on a busy machine.
constexpr std::chrono::minutes kPause{3};

/// The control panel and the classes behind it.
class Panel : public testing::Test, protected support::Surroundings {
protected:
    Panel() {
        support::WriteFile(kTools.INIPath(), "[ServerControl]\r\n");
        SetAddress();
    }
};
