#include "dbsetup/Schema.h"

#include <algorithm>
#include <span>

namespace dbsetup {

namespace {

using Piece = std::string_view;

constexpr Piece kAccount[] = {
    "CREATE TABLE IF NOT EXISTS glogin.account (`AID` int(6) unsigned NOT NULL auto_increment,"
    "`Name` varchar(24) NOT NULL default '',`Pass` varchar(24) NOT NULL default '',"
    "`Gender` int(1) NOT NULL default '0',`Mail` varchar(24) NOT NULL default '',"
    "`GMMode` int(1) default '0',`IP` varchar(24) default NULL,`LoginID1` int(10) default NULL,"
    "`LoginID2` int(10) default NULL,`ver2` int(6) default NULL,PRIMARY KEY  (`AID`)) TYPE=MyISAM;"};
constexpr Piece kStorageInfo[] = {
    "CREATE TABLE IF NOT EXISTS glogin.storageinfo (`AID` int(6) NOT NULL default '0',"
    "`KDATA` blob NOT NULL,PRIMARY KEY  (`AID`)) TYPE=MyISAM;"};

// Parentheses hold a piece together.
constexpr Piece kCharInfo[] = {
    ("CREATE TABLE IF NOT EXISTS amcharacter.charinfo (`AID` int(6) NOT NULL default '0',"
     "`CID` int(6) NOT NULL auto_increment,`Name` varchar(24) NOT NULL default '',"
     "`JID` int(2) NOT NULL default '0',`BaseLv` int(3) NOT NULL default '0',"
     "`BaseEXP` int(10) NOT NULL default '0',`StatusPoint` int(6) NOT NULL default '0',"
     "`JobLv` int(3) NOT NULL default '0',`JobEXP` int(10) NOT NULL default '0',"
     "`SkillPoint` int(6) NOT NULL default '0',"),

    ("`Zeny` int(15) NOT NULL default '0',`Stat1` int(2) NOT NULL default '0',"
     "`Stat2` int(2) NOT NULL default '0',`Option` int(2) NOT NULL default '0',"
     "`Karma` int(3) NOT NULL default '0',`Manner` int(3) NOT NULL default '0',"
     "`HP` int(5) NOT NULL default '0',`SP` int(5) NOT NULL default '0',"
     "`DefaultSpeed` int(3) NOT NULL default '0',`Hair1` int(6) NOT NULL default '0',"
     "`Hair2` int(6) NOT NULL default '0',`Hair3` int(6) NOT NULL default '0',"),

    ("`Weapon` int(2) NOT NULL default '0',`Shield` int(2) NOT NULL default '0',"
     "`Head1` int(2) NOT NULL default '0',`Head2` int(2) NOT NULL default '0',"
     "`Head3` int(2) NOT NULL default '0',"),

    ("`HairColor` int(2) NOT NULL default '0',`ClothesColor` int(2) NOT NULL default '0',"
     "`ParamBase0` int(3) NOT NULL default '0',`ParamBase1` int(3) NOT NULL default '0',"
     "`ParamBase2` int(3) NOT NULL default '0',`ParamBase3` int(3) NOT NULL default '0',"
     "`ParamBase4` int(3) NOT NULL default '0',`ParamBase5` int(3) NOT NULL default '0',"
     "`CharaNumber` int(2) NOT NULL default '0',`Map` varchar(24) NOT NULL default '',"
     // The two points differ in width on purpose: the suite's own tables do.
     "`PointX` int(11) NOT NULL default '0',`PointY` int(3) NOT NULL default '0',"
     "`SaveMap` varchar(24) NOT NULL default '',`SavePointX` int(3) NOT NULL default '0',"),

    ("`SavePointY` int(3) NOT NULL default '0',`Plag` int(3) NOT NULL default '0',"
     "`PLv` int(2) NOT NULL default '0',`MemoMap1` varchar(24) NOT NULL default '',"
     "`MemoPoint1X` int(3) NOT NULL default '0',`MemoPoint1Y` int(3) NOT NULL default '0',"
     "`MemoMap2` varchar(24) NOT NULL default '',`MemoPoint2X` int(3) NOT NULL default '0',"
     "`MemoPoint2Y` int(3) NOT NULL default '0',`MemoMap3` varchar(24) NOT NULL default '',"
     "`MemoPoint3X` int(3) NOT NULL default '0',"),

    "`MemoPoint3Y` int(3) NOT NULL default '0',  PRIMARY KEY  (`CID`)) TYPE=MyISAM;"};
constexpr Piece kCartInfo[] = {
    "CREATE TABLE IF NOT EXISTS amcharacter.cartinfo (`CID` int(6) NOT NULL default '0',"
    "`CDATA` blob NOT NULL,PRIMARY KEY  (`CID`)) TYPE=MyISAM;"};
constexpr Piece kItemInfo[] = {
    "CREATE TABLE IF NOT EXISTS amcharacter.iteminfo (`CID` int(6) NOT NULL default '0',"
    "`IDATA` blob NOT NULL,  PRIMARY KEY  (`CID`)) TYPE=MyISAM;"};
constexpr Piece kFlagInfo[] = {
    "CREATE TABLE IF NOT EXISTS amcharacter.flaginfo (`CID` int(6) NOT NULL default '0',"
    "`FDATA` blob NOT NULL,  PRIMARY KEY  (`CID`)) TYPE=MyISAM;"};
constexpr Piece kSkillInfo[] = {
    "CREATE TABLE IF NOT EXISTS amcharacter.skillinfo (`CID` int(6) NOT NULL default '0',"
    "`SDATA` blob NOT NULL,  PRIMARY KEY  (`CID`)) TYPE=MyISAM;"};

constexpr Piece kGCastle[] = {
    "CREATE TABLE IF NOT EXISTS amglobal.gcastle (`Name` varchar(24) NOT NULL default '',"
    "`GID` varchar(24) NOT NULL default '',`GName` varchar(24) NOT NULL default '',"
    "`GMName` varchar(24) NOT NULL default '',`GKafra` int(1) NOT NULL default '0',"
    "`EDegree` int(12) NOT NULL default '0',`ETrigger` int(1) NOT NULL default '0',"
    "`DDegree` int(12) NOT NULL default '0',`DTrigger` int(1) NOT NULL default '0',"
    "`GuardStatus1` int(1) NOT NULL default '0',`GuardStatus2` int(1) NOT NULL default '0',"
    "`GuardStatus3` int(1) NOT NULL default '0',`GuardStatus4` int(1) NOT NULL default '0',"
    "`GuardStatus5` int(1) NOT NULL default '0',`GuardStatus6` int(1) NOT NULL default '0',"
    "`GuardStatus7` int(1) NOT NULL default '0',`GuardStatus8` int(1) NOT NULL default '0',"
    "  PRIMARY KEY  (`Name`)) TYPE=MyISAM;"};
constexpr Piece kGuild[] = {
    "CREATE TABLE IF NOT EXISTS amglobal.guild (`ID` int(6) NOT NULL default '0',"
    "`Name` varchar(24) NOT NULL default '',`Level` int(6) NOT NULL default '0',"
    "`Exp` int(12) NOT NULL default '0',`GSkillPoint` int(6) NOT NULL default '0',"
    "`Notice1` varchar(100) NOT NULL default '',`Notice2` varchar(100) NOT NULL default '',"
    "`Agit` varchar(24) NOT NULL default '',`Emblem` int(6) NOT NULL default '0',"
    "`Present` int(6) NOT NULL default '0',`DisposFV` int(6) NOT NULL default '0',"
    "`DisposRW` int(6) NOT NULL default '0',`MemData` blob NOT NULL,`PosData` blob NOT NULL,"
    "`GSData` blob NOT NULL,`BanData` blob NOT NULL,`RelationData1` blob NOT NULL,"
    "`RelationData2` blob NOT NULL,  PRIMARY KEY  (`ID`)) TYPE=MyISAM;"};
constexpr Piece kParty[] = {
    "CREATE TABLE IF NOT EXISTS amglobal.party (`Name` varchar(24) NOT NULL default '',"
    "`MemData` blob NOT NULL,  PRIMARY KEY  (`Name`)) TYPE=MyISAM;"};

struct Statement {
    std::string_view table;
    std::span<const Piece> pieces;
};
constexpr Statement kStatements[] = {{"account", kAccount},     {"storageinfo", kStorageInfo},
                                     {"charinfo", kCharInfo},   {"cartinfo", kCartInfo},
                                     {"iteminfo", kItemInfo},   {"flaginfo", kFlagInfo},
                                     {"skillinfo", kSkillInfo}, {"gcastle", kGCastle},
                                     {"guild", kGuild},         {"party", kParty}};

} // namespace

std::string CreateStatement(const suite::Database& database) {
    return "CREATE DATABASE IF NOT EXISTS " + std::string(database.name) + ";";
}

std::string CreateStatement(const suite::Table& table) {
    std::string statement;
    for (const Piece piece : std::ranges::find(kStatements, table.name, &Statement::table)->pieces)
        statement += piece;
    return statement;
}

std::string EngineForm(std::string_view createStatement) {
    constexpr std::string_view kOld = ") TYPE=MyISAM;";
    if (!createStatement.ends_with(kOld))
        return std::string(createStatement);
    createStatement.remove_suffix(kOld.size());
    return std::string(createStatement) + ") ENGINE=MyISAM;";
}

} // namespace dbsetup
