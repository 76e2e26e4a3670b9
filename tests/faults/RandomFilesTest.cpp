#include "Faults.h"

#include "accounts/GMTable.h"
#include "config/clsMapInfo.h"
#include "config/frmServerSettings.h"
#include "config/frmStartingLocationPicker.h"
#include "supervision/frmServerControl.h"

#include <random>

namespace {

/// Files that are half what their readers expect and half noise, the same ones in every run.
class Generator {
public:
    explicit Generator(unsigned seed) : random_(seed) {}

    std::size_t Below(std::size_t end) { return random_() % end; }
    std::string Text() {
        std::string text;
        for (std::size_t pieces = Below(4) == 0 ? 1 : Below(60) + 1; pieces > 0; --pieces)
            text += Piece();
        return text;
    }

private:
    std::string Piece() {
        // What readers take apart at, and numbers at and beyond the limits of theirs.
        static const auto pieces = common::Split(
            "\r\n|\n|\r|=|,|[|]|.gif,| |\t|" + std::string(1, '\0') +
                "|\x1A|\xFF|-|0|1|32767|32768|-32769|2147483647|2147483648|1e308|1e999|&HFF|100001|nan|"
                "prontera.gif,312,392\r\n|100001,1,1,1,1,1,1,1,1,1,1,1,1,1,1,1\r\n|StartingX|StartingY|"
                "StartingMap|"
                "LoginPriority=|ErrorCheckingInterval=|BackupDuration=|ServerDetectionMethod=|EnableBackup="
                "1\r\n|IP=",
            '|');
        if (Below(8) != 0)
            return pieces[Below(pieces.size())];
        std::string noise(Below(Below(20) == 0 ? 70'000 : 40), '\0');
        for (char& byte : noise)
            byte = static_cast<char>(random_());
        return noise;
    }

    std::mt19937 random_;
};

/// Runs `operation`, which may fail with an error of the tool but with nothing else.
template <class Operation> void Survive(const Operation& operation) {
    try {
        operation();
    } catch (const RuntimeError&) {
    }
}

/// The first line of `before` that is neither in `after` at its place nor one that `isOurs`.
std::string LostLine(const std::string& before, const std::string& after,
                     const std::function<bool(std::string_view)>& isOurs) {
    std::size_t from = 0;
    for (const std::string_view line : common::Lines(before)) {
        const std::size_t found = isOurs(line) ? from : after.find(line, from);
        if (found == std::string::npos)
            return testing::PrintToString(std::string(line));
        from = isOurs(line) ? from : found + line.size();
    }
    return "";
}

TEST_F(Faults, RandomBytesAsAnyFileHarmNothing) {
    Generator generator(1);
    const std::string path = program / "random";
    clsMapInfo maps;
    maps.MapInfoPath(program.Path() + "\\");
    maps.MapInfoFilename("random");
    int listed = 0;
    maps.ReturnMapList = [&](const std::string&, std::int16_t, std::int16_t) { ++listed; };
    for (int i = 0; i < Times(500, 5000); ++i) {
        const std::string text = generator.Text();
        support::WriteFile(path, text);
        clsINI ini(path);
        Survive([&] {
            ini.INIProperty("IP", "1.2.3.4");
            EXPECT_EQ(ini.INIProperty("IP"), "1.2.3.4") << i;
            EXPECT_EQ(
                LostLine(text, common::ReadFileText(path), [](auto line) { return line.starts_with("IP="); }),
                "")
                << i;
        });

        support::WriteFile(path, text);
        accounts::GMTable table;
        Survive([&] { table.Load(path); });
        Survive([&] {
            table.Modify(100001, {1, 0, 2});
            table.Save(path);
            const std::string rows = text.substr(std::min(text.size(), text.find('\n')));
            EXPECT_EQ(LostLine(rows, common::ReadFileText(path),
                               [](auto line) { return line.find("100001") != line.npos; }),
                      "")
                << i;
        });

        support::WriteFile(path, text);
        Survive([&] { maps.GetMapList(); });
        maps.MapName("prontera");
        EXPECT_EQ(common::ReadFileText(path), text) << i;
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GT(listed, 0);
}

/// Every window that reads one of the files, over all of them at random.
TEST_F(Faults, WindowsOpenAndCloseOverRandomFiles) {
    Generator generator(2);
    support::MessageBoxes boxes;
    int opened = 0;
    for (int i = 0; i < Times(20, 500); ++i) {
        const std::string tool = generator.Text();
        const std::string server = generator.Text();
        support::WriteFile(kTools.INIPath(), tool);
        support::WriteFile(kerno.INIPath(), server);
        support::WriteFile(program / "kTools\\databases\\MapInfo.txt", generator.Text());
        {
            frmServerSettings settings;
            settings.Load();
            frmStartingLocationPicker picker(settings.newPlayer.txtMapName, settings.newPlayer.txtStartingX,
                                             settings.newPlayer.txtStartingY);
            picker.Load();
            frmServerControl panel;
            panel.Load();
            opened += settings.Loaded() && picker.Loaded() && panel.Loaded();
            EXPECT_EQ(common::ReadFileText(kerno.INIPath()), server) << i;
            EXPECT_EQ(common::ReadFileText(kTools.INIPath()), tool) << i;
            if (settings.Loaded())
                settings.SaveSettings();
            panel.Unload();
        }
        EXPECT_GE(common::ReadFileText(kerno.INIPath()).size(), server.size() / 2) << i;
        EXPECT_GE(common::ReadFileText(kTools.INIPath()).size(), tool.size() / 2) << i;
    }
    EXPECT_GT(opened, 0);
}

} // namespace
