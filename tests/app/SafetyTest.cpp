#include "app/FolderRights.h"
#include "app/frmBrowse.h"
#include "app/frmMainMenu.h"
#include "app/InstanceMark.h"
#include "common/Paths.h"

#include "support/MessageBoxes.h"
#include "support/Surroundings.h"

#include <aclapi.h>
#include <sddl.h>

namespace {

using LocalMemory = common::Handle<void*, LocalFree>;

/// Rights of a folder, written as the system's tools write them: "D:(A;;FA;;;WD)" opens it to everybody.
class Rights {
public:
    explicit Rights(const std::string& text) {
        PSECURITY_DESCRIPTOR all = nullptr;
        EXPECT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(text.c_str(), SDDL_REVISION_1, &all,
                                                                         nullptr))
            << text;
        all_.reset(all);
        BOOL present = FALSE, defaulted = FALSE;
        GetSecurityDescriptorDacl(all, &present, &list_, &defaulted);
    }
    ACL* List() const { return list_; }

private:
    LocalMemory all_;
    ACL* list_ = nullptr;
};

TEST(FolderRights, OnlyTheRightToWriteOfOthersCounts) {
    const std::string user = "S-1-5-21-1-2-3-1001";
    const struct {
        const char* rights;
        bool open;
    } cases[] = {
        // What the installer gives.
        {"D:P(A;OICI;FA;;;S-1-5-21-1-2-3-1001)(A;OICI;FA;;;BA)(A;OICI;FA;;;SY)", false},
        // "Program Files": others read, and hand down nothing but that.
        {"D:(A;;FA;;;SY)(A;;FA;;;BA)(A;;0x1200a9;;;BU)(A;OICIIO;GA;;;CO)", false},
        // A folder of a drive: whoever is logged on changes what is in it.
        {"D:AI(A;ID;FA;;;BA)(A;OICIID;FA;;;SY)(A;OICIID;0x1200a9;;;BU)(A;ID;0x1301bf;;;AU)", true},
        {"D:(A;;FA;;;BA)(A;;FA;;;WD)", true},
        {"D:(A;;FA;;;BA)(A;;0x2;;;S-1-5-21-1-2-3-1002)", true},
        {"D:(A;;FA;;;BA)(A;OICIIO;FA;;;AU)", false},
        {"D:(D;;FA;;;WD)(A;;FA;;;BA)", false},
    };
    for (const auto& each : cases)
        EXPECT_EQ(app::OthersMayWrite(Rights(each.rights).List(), user), each.open) << each.rights;
    EXPECT_TRUE(app::OthersMayWrite(nullptr, user)) << "no rights at all";
    EXPECT_FALSE(app::OthersMayWrite("C:\\not there"));
}

class Safety : public testing::Test, protected support::Surroundings {
protected:
    Safety() {
        settings::CreateDefaultSettings(kTools.INIPath());
        Set({{"KernoPath", servers.Path()}, {"MySQLPath", program.Path() + "\\"}});
    }
    void Give(const Rights& rights) {
        std::string folder = program.Path();
        EXPECT_EQ(SetNamedSecurityInfoA(folder.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, rights.List(), nullptr),
                  ERROR_SUCCESS);
    }

    support::MessageBoxes boxes;
};

TEST_F(Safety, AnAdministratorIsWarnedOfAFolderThatIsOpenToOthers) {
    ASSERT_TRUE(app::RunsAsAdministrator()) << "Wine's user is one";
    for (const bool open : {false, true}) {
        Give(Rights(open ? "D:(A;OICI;FA;;;WD)" : "D:P(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)"));
        frmMainMenu form(false);
        form.Load();
        support::Settle();
    }
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{app::OpenFolderWarning(program.Path())});
}

TEST(InstanceMark, IsFoundInEverySession) {
    const InstanceMark first;
    EXPECT_FALSE(first.Taken());
    const InstanceMark second;
    EXPECT_TRUE(second.Taken());
    // A name without this start is one of the session's own.
    EXPECT_TRUE(std::string_view(InstanceMark::kName).starts_with("Global\\"));
}

TEST_F(Safety, PickersTakeAFolderOutsideTheCodePageByAnotherNameOfIt) {
    const std::wstring wide = common::ToWide(servers.Path()) + L"K\u0113rno";
    ASSERT_TRUE(CreateDirectoryW(wide.c_str(), nullptr));
    frmBrowse form;
    form.Load();
    form.dirCharacter.Path(common::NarrowFolder(wide, 200));
    const std::string chosen = form.dirCharacter.Path();
    support::WriteFile(chosen + "\\Kerno.ini", "");
    EXPECT_NE(GetFileAttributesW((wide + L"\\Kerno.ini").c_str()), INVALID_FILE_ATTRIBUTES) << chosen;
    form.cmdOK.Press();
    EXPECT_EQ(kTools.INIProperty("KernoPath"), chosen + "\\");

    // One that is too long in every way.
    std::wstring deep = wide;
    while (deep.size() < 235)
        CreateDirectoryW((deep += L"\\" + std::wstring(8, L'x')).c_str(), nullptr);
    frmBrowse again;
    again.Load();
    again.dirCharacter.Path(common::ToNarrow(common::ToWide(chosen) + deep.substr(wide.size())));
    again.cmdOK.Press();
    ASSERT_EQ(boxes.Seen().size(), 1u);
    EXPECT_NE(boxes.Texts()[0].find("no shorter name"), std::string::npos) << boxes.Texts()[0];
    EXPECT_TRUE(again.Loaded());
}

} // namespace
