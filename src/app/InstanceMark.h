#pragma once

#include "common/Handle.h"

#include <windows.h>

/// The mark that a running copy of the tool holds, for the whole computer: the servers and the files of
/// another session are the same ones.
class InstanceMark {
public:
    static constexpr const char* kName = "Global\\kTools.Instance";

    InstanceMark()
        : mark_(CreateMutexA(nullptr, FALSE, kName)),
          taken_(!mark_ || GetLastError() == ERROR_ALREADY_EXISTS) {}

    /// Another copy held it first; also true when that one has more rights and keeps it from us.
    bool Taken() const { return taken_; }

private:
    common::Handle<HANDLE, CloseHandle> mark_;
    bool taken_;
};
