#include "Faults.h"

#include "accounts/GMTable.h"
#include "support/ChildProcess.h"

#include <atomic>

namespace {

constexpr int kUsualKills = 250;

// Files that tell a rewrite that was cut short: everything in them has the same value.
constexpr int kCopies = 800;
constexpr int kRows = 400;

std::string Copies(std::string_view value) {
    std::string text = "[Top]\r\n";
    for (int i = 0; i < kCopies; ++i)
        text.append("Copy=").append(value).append("\r\nkept ").append(std::to_string(i)).append("\r\n");
    return text;
}

std::string SettingsFile(const std::string& folder) {
    return folder + "\\kTools.ini";
}

const support::ChildEntry rewriter("rewrite settings", [](const std::string& folder) {
    clsINI ini(SettingsFile(folder));
    for (long i = std::stol(ini.INIProperty("Copy")) + 1;; ++i)
        ini.INIProperty("Copy", std::to_string(i));
});

std::string PrivilegeFile(const std::string& folder) {
    return folder + "\\id_table.txt";
}

const support::ChildEntry saver("save privileges", [](const std::string& folder) {
    accounts::GMTable table;
    table.Load(PrivilegeFile(folder));
    for (std::int16_t flag = static_cast<std::int16_t>(1 - table.Retrieve(1)[0]);;
         flag = static_cast<std::int16_t>(1 - flag)) {
        for (int id = 1; id <= kRows; ++id)
            table.Modify(id, {flag, flag, flag, flag, flag, flag, flag, flag});
        table.Save(PrivilegeFile(folder));
    }
});

TEST(Kills, WhileSettingsAreWrittenLeaveAWholeFile) {
    const int kills = Times(kUsualKills, 1000);
    std::atomic<int> changed = 0;
    support::KillDuring(
        "rewrite settings", kills,
        [](const std::string& folder) { support::WriteFile(SettingsFile(folder), Copies("0")); },
        [&](const std::string& folder) {
            const std::string value = clsINI(SettingsFile(folder)).INIProperty("Copy");
            EXPECT_TRUE(common::ReadFileText(SettingsFile(folder)) == Copies(value));
            changed += value != "0";
        });
    EXPECT_GT(changed, kills / 2) << "most kills fell before the writing";
}

TEST(Kills, WhilePrivilegesAreSavedLeaveAWholeFileAndAWholeBackup) {
    const int kills = Times(kUsualKills, 1000);
    std::atomic<int> changed = 0;
    support::KillDuring(
        "save privileges", kills,
        [](const std::string& folder) {
            accounts::GMTable table;
            for (int id = 1; id <= kRows; ++id)
                table.Add(id, {});
            for (int generation = 0; generation < 2; ++generation)
                table.Save(PrivilegeFile(folder));
        },
        [&](const std::string& folder) {
            for (const std::string& each : {PrivilegeFile(folder), folder + "\\id_table.bak"}) {
                accounts::GMTable left;
                left.Load(each);
                for (int id = 1; id <= kRows; ++id)
                    EXPECT_EQ(left.Retrieve(id), left.Retrieve(1)) << each;
                changed += left.Retrieve(1)[0];
            }
        },
        // A saving writes three files to the disk: the dated one, the earlier one and the file itself.
        std::chrono::milliseconds(120));
    // How many depends on how busy the disk is; that some did is what the test needs.
    EXPECT_GT(changed, kills / 10) << "nearly all kills fell before the saving";
}

} // namespace
