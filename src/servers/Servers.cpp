#include "servers/Servers.h"

#include "settings/kToolsSettings.h"

namespace modServerControl {

namespace {

// The titles stop one character short of a word because ReadTitle never reads a title's last character.
constexpr Component kComponents[] = {
    {"Login", "kLogin.exe", "TForm1", "Kerno Login Serve", "Kerno Logi", settings::key::kLoginPriority},
    {"Character", "kCharacter.exe", "TForm1", "Kerno Character Serve", "Kerno Characte",
     settings::key::kCharacterPriority},
    // The zone server takes its priority from its own configuration file.
    {"Zone", "kZone.exe", "TfrmMain", "Kerno Zone Server ##:##:##:##", "Kerno Zon", {}},
};

struct Settings {
    std::string kernoPath;
    std::string mySQLPath;
    std::int16_t detectionMethod = kDetectByTitle;
};

Settings& Shared() {
    static Settings settings;
    return settings;
}

std::string FullName(Server server) {
    return std::string("Kerno ") + ComponentOf(server).name + " Server";
}

} // namespace

const Component& ComponentOf(Server server) {
    return kComponents[static_cast<int>(server)];
}

const std::string& KernoPath() {
    return Shared().kernoPath;
}
void KernoPath(const std::string& folder) {
    Shared().kernoPath = folder;
}

const std::string& MySQLPath() {
    return Shared().mySQLPath;
}
void MySQLPath(const std::string& folder) {
    Shared().mySQLPath = folder;
}

std::int16_t ServerDetectionMethod() {
    return Shared().detectionMethod;
}
void ServerDetectionMethod(std::int16_t method) {
    Shared().detectionMethod = method;
}

std::string ExecutablePath(Server server) {
    return KernoPath() + ComponentOf(server).executable;
}

std::string RestartQuestion(Server server) {
    return FullName(server) + " is currently running. Do you want to restart it ?";
}

std::string SecondInstanceQuestion(Server server) {
    return "An instance of " + FullName(server) + " is already running. Running 2 instance of " +
           ComponentOf(server).name + " server is not recommended. Start another instance ?";
}

} // namespace modServerControl
