#pragma once

#include <functional>
#include <string>

// What the tour writes down of what it sees.

/// Begins FOLDER\tour.log. False when that cannot be written.
bool BeginReport(const std::string& folder);
/// Writes the closing line. Returns how much has failed.
int EndReport();

/// Writes to the log; `format` takes one text.
void Log(const char* format, const std::string& text);
void Failed(const std::string& what);

/// False when it does not come true within half a minute.
bool WaitUntil(const std::function<bool()>& condition);
