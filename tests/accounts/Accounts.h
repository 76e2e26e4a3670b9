#pragma once

#include "servers/Servers.h"
#include "support/Database.h"

/// A login database with the accounts alpha, bravo and Charlie (100001, 100002, 100004), and a server folder
/// whose privilege file makes bravo a game master who may only broadcast.
class AccountsTest : public support::DatabaseTest {
protected:
    static constexpr const char* kNone = ",0,0,0,0,0,0,0,0,0,0,0,0,0,0,0";
    static constexpr const char* kBroadcast = ",1,0,0,0,0,0,0,0,0,0,0,0,0,0,0";

    AccountsTest() {
        root.Execute("CREATE DATABASE glogin");
        root.Execute("CREATE TABLE glogin.account (`AID` int(6) unsigned NOT NULL auto_increment,"
                     "`Name` varchar(24) NOT NULL default '',`Pass` varchar(24) NOT NULL default '',"
                     "`Gender` int(1) NOT NULL default '0',`Mail` varchar(24) NOT NULL default '',"
                     "`GMMode` int(1) default '0',PRIMARY KEY (`AID`)) ENGINE=MyISAM");
        root.Execute("INSERT INTO glogin.account VALUES (100001,'alpha','a',0,'a@x',0),"
                     "(100002,'bravo','b',1,'b@x',7),(100004,'Charlie','c',0,'c@x',0)");
        support::WriteFile(folder / "Kerno.ini", "gloginname=root\r\ngloginpass=\r\n");
        support::WriteFile(privilegeFile, std::string("header\r\n100002") + kBroadcast + "\r\n");
        modServerControl::KernoPath(folder.Path() + "\\");
    }

    std::vector<std::string> Table() {
        return support::Rows(root, "SELECT AID, Name, Pass, Gender, Mail FROM glogin.account ORDER BY AID");
    }
    /// The privilege file behind its header.
    std::string PrivilegeRows() const {
        const std::string text = common::ReadFileText(privilegeFile);
        return text.substr(text.find('\n') + 1);
    }

    const std::vector<std::string> before{"100001|alpha|a|0|a@x", "100002|bravo|b|1|b@x",
                                          "100004|Charlie|c|0|c@x"};
    support::TempFolder folder;
    std::string privilegeFile = folder / "database\\id_table.txt";
};
