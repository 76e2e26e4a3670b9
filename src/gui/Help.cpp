#include "gui/Help.h"

#include "common/Files.h"

#include <windows.h>

#include <shellapi.h>

namespace gui {

std::optional<std::string> HelpChapter(int templateId) {
    char chapter[80];
    if (!LoadStringA(GetModuleHandleA(nullptr), static_cast<UINT>(templateId), chapter, sizeof chapter))
        return std::nullopt;
    return chapter;
}

std::string ShowHelp(const std::string& chapter) {
    // A small page for each chapter leads on to it: the system drops what stands behind "#" in a file's name.
    const std::string page = common::ProgramFolder() + "\\docs\\help\\" + chapter + ".html";
    if (!common::FileExists(page))
        return "The guide is not there: " + page +
               "\n\nIt comes with Kerno Tools, in the folder docs. Install Kerno Tools again over this "
               "folder.";
    const auto result = reinterpret_cast<INT_PTR>(
        ShellExecuteA(nullptr, "open", page.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
    // The values up to 32 are errors.
    return result > 32 ? "" : "Windows has no program to show the guide with: " + page;
}

} // namespace gui
