#pragma once

#include <string_view>

/// The keys of Kerno.ini but those of the databases' logins, which stand in their table. The servers read
/// this file; switches are "0" or "1".
namespace suite::key {

inline constexpr std::string_view kServerName = "Name";
inline constexpr std::string_view kServerAddress = "IP";
inline constexpr std::string_view kLoginPort = "sv1port";
inline constexpr std::string_view kCharacterPort = "sv2port";
inline constexpr std::string_view kZonePort = "sv3port";
inline constexpr std::string_view kBaseExpMultiplier = "BaseExpMultiplier";
inline constexpr std::string_view kJobExpMultiplier = "JobExpMultiplier";
inline constexpr std::string_view kDeathBaseLoss = "DeathBaseLoss";
inline constexpr std::string_view kDeathJobLoss = "DeathJobLoss";
inline constexpr std::string_view kDefaultMap = "DefaultMap";
inline constexpr std::string_view kDefaultPointX = "DefaultPoint_X";
inline constexpr std::string_view kDefaultPointY = "DefaultPoint_Y";
inline constexpr std::string_view kDefaultZeny = "DefaultZeny";
inline constexpr std::string_view kAutoStart = "AutoStart";
inline constexpr std::string_view kWarpDebug = "WarpDebug";
inline constexpr std::string_view kEnableMonsterKnockBack = "EnableMonsterKnockBack";
inline constexpr std::string_view kDisableMonsterActive = "DisableMonsterActive";
inline constexpr std::string_view kDisableEquipLimit = "DisableEquipLimit";
inline constexpr std::string_view kDisableSkillLimit = "DisableSkillLimit";
inline constexpr std::string_view kDisableFleeDown = "DisableFleeDown";
inline constexpr std::string_view kMonsterMob = "MonsterMob";
inline constexpr std::string_view kSummonMonsterMob = "SummonMonsterMob";
inline constexpr std::string_view kSummonMonsterName = "SummonMonsterName";
inline constexpr std::string_view kSummonMonsterAgo = "SummonMonsterAgo";
inline constexpr std::string_view kSummonMonsterExp = "SummonMonsterExp";
inline constexpr std::string_view kDropMultiplier = "DropMultiplier";
inline constexpr std::string_view kGlobalMessage = "GlobalGMsg";
inline constexpr std::string_view kMapMessage = "MapGMsg";
/// The zone server's priority, which that server reads itself.
inline constexpr std::string_view kZonePriority = "Priority";

} // namespace suite::key
