#include "common/Paths.h"

#include "common/Files.h"
#include "common/RuntimeError.h"
#include "support/Test.h"

namespace {

TEST(Paths, NoLetterBecomesASimilarOne) {
    // The tests run in code page 1252.
    EXPECT_EQ(common::NarrowExactly(L"C:\\Kerno \u00E9\u20AC"), "C:\\Kerno \xE9\x80");
    for (const wchar_t* lossy :
         {L"C:\\K\u0113rno", L"C:\\\u041A\u0435\u0440\u043D\u043E", L"\u221E", L"\U0001F600"})
        EXPECT_FALSE(common::NarrowExactly(lossy)) << common::ToUtf8(lossy);
}

TEST(Paths, AFolderOutsideTheCodePageGoesByItsShortNameOrIsRefused) {
    const support::TempFolder folder;
    const std::wstring above = common::ToWide(folder.Path()) + L"\\";
    for (const wchar_t* name : {L"K\u0113rno", L"\u041A\u0435\u0440\u043D\u043E"}) {
        const std::wstring path = above + name;
        ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
        const std::string narrow = common::NarrowFolder(path, 200);
        support::WriteFile(narrow + "\\mark.txt", "here");
        EXPECT_NE(GetFileAttributesW((path + L"\\mark.txt").c_str()), INVALID_FILE_ATTRIBUTES) << narrow;
        // One that is not there has no short name.
        EXPECT_THROW(common::NarrowFolder(path + L"2", 200), RuntimeError);
    }
    EXPECT_EQ(common::NarrowFolder(above + L"plain", 200), folder / "plain");
    EXPECT_THROW(common::NarrowFolder(above + std::wstring(300, L'x'), 200), RuntimeError);
}

TEST(Files, AFileBeyondAllBoundsIsAnError) {
    const support::TempFolder folder;
    const common::FileHandle file(CreateFileA((folder / "huge").c_str(), GENERIC_WRITE, FILE_SHARE_READ,
                                              nullptr, CREATE_NEW, 0, nullptr));
    LARGE_INTEGER size;
    size.QuadPart = (LONGLONG{1} << 32) + 5;
    // No place is taken up by what was never written.
    ASSERT_TRUE(SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()));
    EXPECT_THROW(common::ReadFileText(folder / "huge"), RuntimeError);
}

} // namespace
