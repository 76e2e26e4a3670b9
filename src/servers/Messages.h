#pragma once

#include "servers/Servers.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace modServerControl {

/// Takes what the server has written into its message box since the last call, and empties the box; no more
/// than kMostText. Without blanks at both ends; "" when there is nothing, no server, or one that does not
/// answer. Of a box that refuses to be emptied only what it did not hold at the last call.
std::string ReadLog(Server server);

/// Types the text into the zone server's text field. 1 when every character was posted, else 0; an empty
/// text succeeds where there is a field.
std::int16_t TypeZoneMessage(std::string_view text);

/// Presses the button of this caption; 1 when that was posted, else 0.
std::int16_t ClickServerButton(const std::string& caption);

/// Types the text and presses "Send Message", whatever came of the typing. 1 when both succeeded.
std::int16_t SendPlayerMessage(std::string_view text);

/// The whole title of the zone server's main window, or "".
std::string GetZoneTitle();

} // namespace modServerControl
