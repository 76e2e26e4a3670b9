#include "Faults.h"
#include "TableFiles.h"

#include "servers/Servers.h"
#include "supervision/BackupArchive.h"
#include "supervision/BackupWork.h"
#include "supervision/frmServerControl.h"

#include <fstream>

namespace {

/// Fills a disk up to a number of free blocks, as long as the object lives.
class Ballast {
public:
    Ballast(const std::string& disk, std::uintmax_t freeBlocks) : path_(disk + "\\ballast") {
        const std::string block(4096, 'b');
        std::uintmax_t written = 0;
        {
            // Wine tells the space of the drive, whose folder the small disk is.
            std::ofstream file(path_, std::ios::binary);
            for (; file.write(block.data(), 4096).flush(); ++written)
                if (written > kMostBlocks)
                    break;
        }
        if (written > kMostBlocks) {
            std::filesystem::remove(path_);
            throw std::runtime_error("the small disk is a large one");
        }
        std::filesystem::resize_file(path_, (written - std::min(written, freeBlocks)) * 4096);
    }
    ~Ballast() { std::filesystem::remove(path_); }
    Ballast(const Ballast&) = delete;

private:
    static constexpr std::uintmax_t kMostBlocks = 4096;
    std::string path_;
};

/// Whatever file the disk is full at.
TEST_F(Faults, ADiskThatIsFullCostsNoEarlierBackup) {
    const char* const disk = std::getenv("KTOOLS_SMALL_DISK");
    ASSERT_NE(disk, nullptr) << "no small disk: this system allows no mounts of one's own";
    const struct Link {
        explicit Link(std::string from, std::string to) : path(std::move(from)), target(std::move(to)) {
            std::filesystem::create_directories(target);
            support::LinkFolder(path, target);
        }
        ~Link() {
            support::UnlinkFolder(path);
            supervision::DeleteFolder(target);
        }
        std::string path, target;
    } link(program / "kTools", disk + ("\\" + std::to_string(GetCurrentProcessId())));
    WriteTables(program / "MySQL", 'a');
    modServerControl::MySQLPath(program / "MySQL\\");
    support::MessageBoxes boxes;
    gui::Local<frmServerControl> panel;
    panel->Load();
    const auto folders = [] {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(supervision::BackupFolder()))
            names.push_back(entry.path().filename().string());
        return names;
    };
    const auto backUp = [&] {
        boxes.Clear();
        panel->backup.cmdBackupFiles.Press();
        EXPECT_TRUE(support::Settle());
    };
    backUp();
    ASSERT_EQ(folders().size(), 1u);
    const std::string earlier = "30-06-2004 01 00 AM";
    std::filesystem::rename(supervision::BackupFolder() + "\\" + folders()[0],
                            supervision::BackupFolder() + "\\" + earlier);
    int failed = 0;
    std::uintmax_t blocks = 1;
    for (; failed < 1000; blocks += static_cast<std::uintmax_t>(Times(9, 1))) {
        SCOPED_TRACE(std::to_string(blocks) + " blocks free");
        const Ballast ballast(disk, blocks);
        backUp();
        if (folders().size() > 1)
            break;
        ++failed;
        ASSERT_EQ(boxes.Texts().size(), 1u);
        EXPECT_TRUE(boxes.Texts()[0].starts_with("Kerno Tools Error :: [61] Disk full")) << boxes.Texts()[0];
        EXPECT_NE(panel->backup.lblBackupResult.Caption().find("FAILED: Disk full"), std::string::npos);
        EXPECT_NE(Log("Backup.log").find("FAILED: Disk full"), std::string::npos);
        EXPECT_EQ(folders(), std::vector<std::string>{earlier});
        EXPECT_FALSE(supervision::BackupWork::IsLeft());
    }
    EXPECT_GT(failed, 5);
    ForEachFile([&](const std::string& path, std::string_view ending) {
        EXPECT_EQ(common::ReadFileText(supervision::BackupFolder() + "\\" + earlier + path),
                  FileOf(ending, 'a'));
    });
    panel->Unload();
    modServerControl::MySQLPath("");
}

} // namespace
