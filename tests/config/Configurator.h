#pragma once

#include "config/frmServerSettings.h"
#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

/// A configurator over files that hold nothing else.
class Configurator : public testing::Test, protected support::Surroundings {
protected:
    void Open(const std::string& kernoText, const std::string& toolText = "IPDetectionMethod=0\r\n") {
        support::WriteFile(kerno.INIPath(), kernoText);
        support::WriteFile(kTools.INIPath(), toolText);
        form.Unload();
        form.Load();
        ASSERT_TRUE(form.Loaded());
    }

    support::MessageBoxes boxes;
    frmServerSettings form;
    fraNewPlayer& newPlayer = form.newPlayer;
};
