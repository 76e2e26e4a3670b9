#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace accounts {

/// Earlier generations of the privilege file stand beside it as "id_table 2026-11-21 15.30.12.345.bak"; the
/// newest thirty stay.
inline constexpr std::size_t kGenerations = 30;

/// Keeps `text` as the newest generation and lets the oldest go. Raises the file error.
void KeepGeneration(const std::string& path, std::string_view text);

/// The paths of the generations of the privilege file at `path`, newest first.
std::vector<std::string> Generations(const std::string& path);

} // namespace accounts
