#include "gui/frmWaiting.h"

#include "gui/Waiting.h"

void frmWaiting::What(const std::string& what) {
    lblWhat.Caption(gui::WaitingText(what) + ".");
}

void frmWaiting::cmdCancel_Click() {
    cmdCancel.Enabled(false);
    cancelled_.Set();
}

void frmWaiting::tmrTime_Timer() {
    const auto time = std::chrono::steady_clock::now() - since_;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    lblTime.Caption("For " + std::to_string(seconds) + (seconds == 1 ? " second" : " seconds") +
                    ". The other windows can be used meanwhile.");
}
