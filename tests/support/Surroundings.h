#pragma once

#include "common/Files.h"
#include "settings/clsINI.h"
#include "settings/kToolsSettings.h"
#include "support/Servers.h"
#include "support/Test.h"

#include <utility>

namespace support {

/// What the tool finds on a computer: a program folder with kTools.ini and a server folder with the stand-ins
/// and Kerno.ini. Both files are there as soon as something was written to them.
class Surroundings {
public:
    Surroundings() { common::ProgramFolder(program.Path()); }
    ~Surroundings() { common::ProgramFolder(oldFolder_); }
    Surroundings(const Surroundings&) = delete;

    void Set(const std::vector<std::pair<std::string_view, std::string>>& values) {
        for (const auto& [key, value] : values)
            kTools.INIProperty(key, value);
    }
    void TurnOn(const std::vector<std::string_view>& keys) {
        for (const std::string_view key : keys)
            kTools.INIProperty(key, "1");
    }
    /// The address of this computer is 10.1.2.3, here and in Kerno.ini. A name that is an address needs no
    /// name server.
    void SetAddress() {
        WriteFile(kerno.INIPath(), "IP=10.1.2.3\r\n");
        Set({{settings::key::kIPDetectionMethod, "1"}, {settings::key::kDynamicHostname, "10.1.2.3"}});
    }
    std::string Kerno() const { return common::ReadFileText(kerno.INIPath()); }
    std::string Tool() const { return common::ReadFileText(kTools.INIPath()); }
    /// A log file's text, "" when there is none.
    std::string Log(const std::string& name) const {
        const std::string path = program / "kTools\\Logs\\" + name;
        return common::FileExists(path) ? common::ReadFileText(path) : "";
    }

private:
    const std::string oldFolder_ = common::ProgramFolder();

public:
    const TempFolder program;
    const ServerFolder servers;
    clsINI kTools{program / "kTools.ini"};
    clsINI kerno{servers.Path() + "Kerno.ini"};
};

} // namespace support
