#include "app/FolderRights.h"

#include "common/Files.h"

#include <aclapi.h>
#include <sddl.h>

#include <algorithm>

namespace app {

namespace {

using LocalMemory = common::Handle<void*, LocalFree>;

constexpr DWORD kWrites = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | WRITE_DAC |
                          WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

// Who may do everything on the computer anyway: the system, administrators, the installer of Windows' own
// parts. The last two stand for the owner of a folder.
constexpr const char* kTrusted[] = {"S-1-5-18", "S-1-5-32-544",
                                    "S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464",
                                    "S-1-3-0", "S-1-3-4"};

std::string TextOf(PSID id) {
    char* text = nullptr;
    if (!ConvertSidToStringSidA(id, &text))
        return {};
    const LocalMemory owner(text);
    return text;
}

std::string UserOfProgram() {
    HANDLE opened = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened))
        return {};
    const common::FileHandle token(opened);
    struct {
        TOKEN_USER user;
        BYTE id[SECURITY_MAX_SID_SIZE];
    } answer{};
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), TokenUser, &answer, sizeof answer, &size))
        return {};
    return TextOf(answer.user.User.Sid);
}

} // namespace

bool OthersMayWrite(const ACL* rights, const std::string& user) {
    if (!rights)
        return true;
    for (DWORD i = 0; i < rights->AceCount; ++i) {
        void* found = nullptr;
        if (!GetAce(const_cast<ACL*>(rights), i, &found))
            return false;
        auto& entry = *static_cast<ACCESS_ALLOWED_ACE*>(found);
        // What only is handed down says nothing of the folder itself.
        if (entry.Header.AceType != ACCESS_ALLOWED_ACE_TYPE || (entry.Header.AceFlags & INHERIT_ONLY_ACE) ||
            !(entry.Mask & kWrites))
            continue;
        const std::string who = TextOf(&entry.SidStart);
        if (who != user && std::ranges::count(kTrusted, who) == 0)
            return true;
    }
    return false;
}

bool OthersMayWrite(const std::string& folder) {
    ACL* rights = nullptr;
    PSECURITY_DESCRIPTOR all = nullptr;
    if (GetNamedSecurityInfoA(folder.c_str(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr,
                              &rights, nullptr, &all) != ERROR_SUCCESS)
        return false;
    const LocalMemory owner(all);
    return OthersMayWrite(rights, UserOfProgram());
}

bool RunsAsAdministrator() {
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    PSID administrators = nullptr;
    if (!AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0,
                                  0, 0, 0, 0, &administrators))
        return false;
    const common::Handle<PSID, FreeSid> owner(administrators);
    BOOL is = FALSE;
    return CheckTokenMembership(nullptr, administrators, &is) && is;
}

std::string OpenFolderWarning(const std::string& folder) {
    return "Kerno Tools runs as administrator, from a folder that other users of this computer may write to. "
           "What "
           "they put there could run with your rights.\n\nTo close the folder to them, type this in a "
           "command "
           "prompt, in one line:\n\nicacls \"" +
           folder +
           "\" /inheritance:r /grant:r \"%USERNAME%:(OI)(CI)F\" *S-1-5-32-544:(OI)(CI)F *S-1-5-18:(OI)(CI)F";
}

} // namespace app
