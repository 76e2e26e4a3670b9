#include "supervision/frmJournal.h"

#include "servers/Journal.h"

#include <shellapi.h>

namespace {

constexpr int kLines = 200;

} // namespace

void frmJournal::Form_Load() {
    const std::string lines = journal::LastLines(kLines);
    txtLines.Text(lines.empty() ? "Nothing has happened yet." : lines);
    // The newest lines are the last ones.
    const auto end = static_cast<WPARAM>(lines.size());
    SendMessageA(txtLines.Window(), EM_SETSEL, end, static_cast<LPARAM>(end));
    SendMessageA(txtLines.Window(), EM_SCROLLCARET, 0, 0);
}

void frmJournal::cmdOpen_Click() {
    ShellExecuteA(Window(), "open", journal::Path().c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}
