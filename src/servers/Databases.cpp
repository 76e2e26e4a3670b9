#include "servers/Databases.h"

namespace suite {

namespace {

constexpr Table kLoginTables[] = {{"account", "Account "}, {"storageinfo", "Storageinfo "}};
constexpr Table kCharacterTables[] = {{"charinfo", "CharInfo "},
                                      {"cartinfo", "CartInfo "},
                                      {"iteminfo", "ItemInfo "},
                                      {"flaginfo", "FlagInfo "},
                                      {"skillinfo", "SkillInfo "}};
constexpr Table kGlobalTables[] = {{"gcastle", "GCastle "}, {"guild", "Guild "}, {"party", "Party "}};

constexpr std::size_t kAsChecked[] = {0, 1, 2};
constexpr std::size_t kCartFirst[] = {1, 0, 2, 3, 4};
constexpr std::size_t kAlphabetical[] = {1, 0, 3, 2, 4};
constexpr auto kBoth = std::span(kAsChecked).first<2>();

constexpr Database kDatabases[] = {
    {"glogin", "gloginname", "gloginpass", kLoginTables, kBoth, kBoth},
    {"amcharacter", "amcharactername", "amcharacterpass", kCharacterTables, kCartFirst, kAlphabetical},
    {"amglobal", "amglobalname", "amglobalpass", kGlobalTables, kAsChecked, kAsChecked}};

} // namespace

std::span<const Database> Databases() {
    return kDatabases;
}

Login ReadLogin(const clsINI& kerno, const Database& database) {
    return {kerno.INIProperty(database.userKey), kerno.INIProperty(database.passwordKey)};
}

} // namespace suite
