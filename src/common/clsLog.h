#pragma once

#include "common/Property.h"

#include <windows.h>

#include <string>

/// Appends entries to one log file. The file is opened and closed for each entry, so that every entry is on
/// disk at once and other programs can read the log meanwhile.
class clsLog {
public:
    /// Folder of the file, with its trailing backslash. It is never made here.
    common::Property<std::string> LogPath;
    common::Property<std::string> LogFilename;

    /// Appends the message as it is and a line end; below a line with the local time unless `plain`. False
    /// when there is no file name, it leads to a device, or the file cannot be written: a log never disturbs
    /// its owner.
    bool WriteLog(const std::string& message, bool plain) const;
};

namespace common {

/// The folder of the tool's logs, with its trailing backslash, made where it is missing. Without it there are
/// no logs, which never disturbs their owner.
std::string LogFolder();

/// "[dd/mm/yy h:m:s]", the time without leading zeros.
std::string LogStamp(const SYSTEMTIME& time);

} // namespace common
