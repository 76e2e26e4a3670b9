#pragma once

#include <windows.h>

#include <string>

/// Whether what runs from a folder is its user's own.
namespace app {

/// May others than the user (a security id as text), administrators and the system change what is in a folder
/// with these rights? Null, no rights at all, is a folder that is open to everybody.
bool OthersMayWrite(const ACL* rights, const std::string& user);

/// The question for this user; false when the folder's rights cannot be read.
bool OthersMayWrite(const std::string& folder);

/// This program has the rights of an administrator, not only its user.
bool RunsAsAdministrator();

/// Tells of the folder and of the command that closes it to others.
std::string OpenFolderWarning(const std::string& folder);

} // namespace app
