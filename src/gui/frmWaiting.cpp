#include "gui/frmWaiting.h"

#include "common/Numbers.h"
#include "gui/Waiting.h"

void frmWaiting::What(const std::string& what) {
    lblWhat.Caption(gui::WaitingText(what) + ".");
}

void frmWaiting::cmdCancel_Click() {
    cmdCancel.Enabled(false);
    cancelled_.Set();
}

void frmWaiting::tmrTime_Timer() {
    lblTime.Caption("For " + common::SecondsText(std::chrono::steady_clock::now() - since_) +
                    ". The other windows can be used meanwhile.");
}
