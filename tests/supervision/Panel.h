#pragma once

#include "common/Files.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"
#include "supervision/frmServerControl.h"
#include "support/Servers.h"
#include "support/TempFolder.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

/// A program folder with kTools.ini and a server folder with the stand-ins and Kerno.ini, for the control
/// panel and the classes behind it.
class Panel : public testing::Test {
protected:
    Panel() {
        common::ProgramFolder(program_.Path());
        kTools.INIPath(settings::kToolsIniPath());
        kerno.INIPath(settings::KernoIniPath(servers.Path()));
        support::WriteFile(kTools.INIPath(), "[ServerControl]\r\n");
        support::WriteFile(kerno.INIPath(), "IP=10.1.2.3\r\n");
        // A name that is an address needs no name server.
        Set({{settings::key::kIPDetectionMethod, "1"}, {settings::key::kDynamicHostname, "10.1.2.3"}});
    }
    ~Panel() override { common::ProgramFolder(oldFolder_); }

    void Set(const std::vector<std::pair<std::string_view, std::string>>& values) {
        for (const auto& [key, value] : values)
            kTools.INIProperty(key, value);
    }
    void TurnOn(const std::vector<std::string_view>& keys) {
        for (const std::string_view key : keys)
            kTools.INIProperty(key, "1");
    }
    std::string Log(const std::string& name) const {
        const std::string path = program_ / "kTools\\Logs\\" + name;
        return common::FileExists(path) ? common::ReadFileText(path) : "";
    }

private:
    std::string oldFolder_ = common::ProgramFolder();
    support::TempFolder program_;

protected:
    support::ServerFolder servers;
    clsINI kTools;
    clsINI kerno;
};
