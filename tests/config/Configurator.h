#pragma once

#include "config/frmServerSettings.h"

#include "common/Files.h"
#include "support/MessageBoxes.h"
#include "support/Servers.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

/// A configurator of its own, with server and program folders that hold nothing else.
class Configurator : public testing::Test {
protected:
    Configurator() { common::ProgramFolder(program.Path()); }
    ~Configurator() override { common::ProgramFolder(realFolder); }

    void Open(const std::string& kernoText, const std::string& toolText = "IPDetectionMethod=0\r\n") {
        support::WriteFile(kernoIni, kernoText);
        support::WriteFile(toolIni, toolText);
        form.Unload();
        form.Load();
        ASSERT_TRUE(form.Loaded());
    }
    std::string Kerno() const { return common::ReadFileText(kernoIni); }
    std::string Tool() const { return common::ReadFileText(toolIni); }

    const std::string realFolder = common::ProgramFolder();
    support::TempFolder program;
    support::ServerFolder servers;
    const std::string kernoIni = servers.Path() + "Kerno.ini";
    const std::string toolIni = program / "kTools.ini";
    support::MessageBoxes boxes;
    frmServerSettings form;
    NewPlayerPage& newPlayer = form.newPlayer;
};
