#pragma once

#include <optional>
#include <string>

namespace gui {

/// The chapter of the guide about a form or page, which is the string resource with the id of its template;
/// nothing when it has none.
std::optional<std::string> HelpChapter(int templateId);

/// Opens the guide that is shipped beside the program at a chapter. Returns what there is to tell when it
/// cannot be opened, else "".
std::string ShowHelp(const std::string& chapter);

} // namespace gui
