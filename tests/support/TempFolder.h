#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace support {

/// A new empty folder that goes with the object, whatever was put into it.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;

    /// Full path without a trailing backslash.
    const std::string& Path() const { return path_; }
    /// Full path of `name` in it.
    std::string operator/(std::string_view name) const { return path_ + "\\" + std::string(name); }

private:
    std::string path_;
};

/// Writes `text` as the whole file, into a folder that is made when it is missing.
void WriteFile(const std::string& path, std::string_view text);

/// True when the action succeeds although somebody else has the file to himself, and lets go of it a moment
/// later. On a busy machine the moment may last, so the action may try several times.
bool WorksInAMomentsLock(const std::string& path, const std::function<bool()>& works);

/// Makes `link` a junction that leads to the folder `target`; under Wine what is one there, a symbolic link.
void LinkFolder(const std::string& link, const std::string& target);
/// Removes such a link, and nothing of what it leads to.
void UnlinkFolder(const std::string& link);

} // namespace support
