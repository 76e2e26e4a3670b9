#pragma once

#include "settings/IniText.h"

#include <span>
#include <string>
#include <string_view>

/// The one settings-file class: reads and writes single keys of kTools.ini and of the servers' Kerno.ini. The
/// file is read at each call and rewritten at each change, in one step: a reader, or a crash at any moment,
/// meets the old file or the new one. Several objects may share a file; the last to write wins.
///
/// Raises the file errors of reading and writing (62 for a file of zero bytes, 70 for one that is locked,
/// read-only or hidden); the file is then as it was.
class clsINI {
public:
    clsINI() = default;
    explicit clsINI(std::string path) : path_(std::move(path)) {}

    const std::string& INIPath() const { return path_; }
    void INIPath(const std::string& path) { path_ = path; }

    /// Value of the first line with the key; "" when the file or the key is missing.
    std::string INIProperty(std::string_view key) const;

    /// Gives every line of the key the value; a key without a line becomes the last line of the file, and a
    /// missing file is made with this one line.
    void INIProperty(std::string_view key, std::string_view value);

    /// All values at once, one after the other: one rewrite of the file as it is now.
    void Change(std::span<const settings::Entry> entries);

    /// The whole text; "" when the file is missing.
    std::string Text() const;

    /// Appends a section header between blank lines, also when there is one of that name. Always false.
    bool AddSection(std::string_view name);

private:
    std::string path_;
};
