#include "Faults.h"

#include "accounts/AccountKeeper.h"
#include "accounts/Sending.h"
#include "accounts/WaitingChanges.h"
#include "database/Query.h"
#include "support/Database.h"

#include <map>
#include <random>

namespace {

using namespace accounts;
using Kind = WaitingChange::Kind;

/// What server and privilege file hold at one moment.
struct World {
    std::map<std::int32_t, FieldTexts> rows;
    std::map<std::int32_t, std::string> privileges;

    std::string NameOf(std::int32_t id) const {
        const auto row = rows.find(id);
        return row == rows.end() ? "" : *row->second[Index(Field::Name)];
    }
    std::string PrivilegesOf(std::int32_t id) const {
        const auto row = privileges.find(id);
        return row == privileges.end() ? PrivilegesText(std::nullopt) : row->second;
    }
};

/// An operator with an editor of his own.
struct Hand {
    clsAccountSQL store;
    AccountKeeper keeper{store};
};

/// A change as its operator means it: the account that it is for, and what it makes of it.
struct Meant {
    WaitingChange change;
    /// Number and name on the server, as the operator knows them, and what they become.
    std::int32_t id = 0;
    std::string name;
    std::int32_t newId = 0;
    std::string newName;
};

/// Two editors, the game and somebody at the privilege file, all at the same few accounts: names and numbers
/// come back again and again.
class AccountsRun : public testing::Test, protected support::Databases {
protected:
    AccountsRun() {
        root.Execute("CREATE DATABASE glogin");
        root.Execute(
            "CREATE TABLE glogin.account (AID int(6) unsigned NOT NULL auto_increment PRIMARY KEY, Name "
            "varchar(24) NOT NULL, Pass varchar(24) NULL, Gender int(1) NOT NULL default '0', Mail "
            "varchar(24) NOT NULL default '') ENGINE=MyISAM");
        for (int i = 1; i <= 6; ++i)
            GameAdds(i, "name" + std::to_string(i));
        support::WriteFile(file, "ID\r\n3" + Flags(7) + "\r\n// by hand\r\n");
        for (Hand& hand : hands) {
            hand.store.SQLHostname("localhost");
            hand.store.SQLUsername("root");
            hand.store.KernoPath(folder.Path());
            EXPECT_EQ(support::Run(hand.store.ConnectSQL()), 1);
            EXPECT_EQ(hand.store.LoadGMData(), 1);
        }
    }

    int Any(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    std::string AnyName() { return "name" + std::to_string(1 + Any(12)); }
    std::string AnyText() { return "text" + std::to_string(Any(50)); }
    static std::string Flags(int bits) {
        std::string text;
        for (std::size_t i = 0; i < kPrivilegeCount; ++i)
            text += (bits >> i) & 1 ? ",1" : ",0";
        return text;
    }
    void GameAdds(int id, const std::string& name) {
        root.Execute(
            "INSERT IGNORE INTO glogin.account (AID, Name, Pass) SELECT " + std::to_string(id) + ",'" + name +
            "',NULL FROM DUAL WHERE NOT EXISTS (SELECT * FROM glogin.account WHERE Name='" + name + "')");
    }

    World Look() {
        World world;
        const auto rows =
            database::ReadAll(root.Session(), "SELECT AID, Name, Pass, Gender, Mail FROM glogin.account");
        for (std::size_t i = 0; i < rows.Count(); ++i) {
            FieldTexts& texts = world.rows[static_cast<std::int32_t>(rows.At(i, 0).AsInteger())];
            for (std::size_t column = 0; column < texts.size(); ++column)
                texts[column] = rows.At(i, column).AsText();
        }
        GMTable table;
        table.Load(file);
        for (const GMTable::Row& row : table.Rows()) {
            if (row.isAccount)
                world.privileges.try_emplace(row.id, PrivilegesText(row.flags));
        }
        return world;
    }

    void ChangeAny(Hand& hand) {
        const auto rows = hand.store.Rows();
        if (rows.empty() ||
            !hand.keeper.Select(rows[static_cast<std::size_t>(Any(static_cast<int>(rows.size())))]))
            return;
        AccountEdit edit = hand.keeper.Current()->stored;
        switch (Any(6)) {
        case 0:
            edit.fields.name = AnyName();
            break;
        case 1:
            edit.fields.id = std::to_string(1 + Any(12));
            break;
        case 2:
            edit.fields.password = AnyText();
            break;
        case 3:
            edit.fields.email = AnyText();
            break;
        case 4:
            edit.isGameMaster = !edit.isGameMaster;
            break;
        default:
            edit.isGameMaster = true;
            edit.privileges[static_cast<std::size_t>(Any(15))] = static_cast<std::int16_t>(Any(2));
        }
        if (hand.keeper.RefusalToKeep(edit).empty())
            hand.keeper.Keep(edit);
    }
    void AddOne(Hand& hand) {
        AccountEdit edit;
        edit.fields = {AnyName(), std::to_string(1 + Any(12)), AnyText(), AnyText()};
        edit.isGameMaster = Any(2) == 1;
        edit.privileges[static_cast<std::size_t>(Any(15))] = 1;
        hand.keeper.Add(edit);
    }
    void DeleteOne(Hand& hand) {
        if (const auto rows = hand.store.Rows(); !rows.empty())
            hand.keeper.Delete(rows[static_cast<std::size_t>(Any(static_cast<int>(rows.size())))]);
    }
    void TakeOneBack(Hand& hand) {
        const auto changes = WaitingChanges(hand.store);
        if (!changes.empty())
            TakeBack(hand.store, changes[static_cast<std::size_t>(Any(static_cast<int>(changes.size())))]);
    }
    void Reload(Hand& hand) {
        ASSERT_EQ(support::Run(hand.store.RefreshAccountSQL()), 1);
        ASSERT_EQ(hand.store.LoadGMData(), 1);
        hand.keeper.SelectNone();
        EXPECT_TRUE(WaitingChanges(hand.store).empty());
    }
    void Game() {
        const std::string id = std::to_string(1 + Any(12));
        switch (Any(4)) {
        case 0:
            GameAdds(std::stoi(id), AnyName());
            break;
        case 1:
            root.Execute("DELETE FROM glogin.account WHERE AID=" + id);
            break;
        default:
            root.Execute("UPDATE glogin.account SET " + std::string(Any(2) ? "Pass" : "Mail") + "='" +
                         AnyText() + "' WHERE AID=" + id);
        }
    }
    /// The header stays: a hand that takes it away is another test's.
    void HandInFile() {
        std::string text = "ID\r\n// by hand " + AnyText() + "\r\n";
        for (const auto& line : common::Split(common::ReadFileText(file), '\n')) {
            const std::string row = line.substr(0, line.find('\r'));
            if (!row.empty() && row[0] >= '0' && row[0] <= '9' && Any(4))
                text += row + "\r\n";
        }
        text += std::to_string(1 + Any(12)) + Flags(Any(1 << 15)) + "\r\n";
        support::WriteFile(file, text);
    }

    std::vector<Meant> MeantBy(Hand& hand) {
        std::vector<Meant> all;
        for (const WaitingChange& change : WaitingChanges(hand.store)) {
            Meant meant;
            meant.change = change;
            auto row = std::optional(change.row);
            if (change.kind == Kind::PrivilegesChanged)
                row = hand.store.RowOfAccount(change.id);
            if (row) {
                meant.newId = std::stoi(hand.store.Text(*row, Field::Id));
                meant.newName = hand.store.Text(*row, Field::Name);
                meant.id = std::stoi(hand.store.ServerText(*row, Field::Id).value_or("0"));
                meant.name = hand.store.ServerText(*row, Field::Name).value_or("");
            }
            all.push_back(meant);
        }
        return all;
    }

    /// Saves, and compares what became of the world with what was meant.
    void Save(Hand& hand) {
        const World before = Look();
        const auto meant = MeantBy(hand);
        SendResult result = support::Run(accounts::Send(hand.store));
        std::set<std::size_t> decided;
        for (int round = 0; !result.conflicts.empty() && round < 3; ++round) {
            for (const Conflict& conflict : result.conflicts) {
                decided.insert(conflict.row);
                Decide(hand.store, conflict, {true, true, Any(2) == 1, Any(2) == 1, Any(2) == 1});
            }
            const auto notes = result.notes;
            result = support::Run(accounts::Send(hand.store));
            result.notes.insert(result.notes.end(), notes.begin(), notes.end());
        }
        hand.keeper.SelectNone();
        const World after = Look();
        const auto waiting = WaitingChanges(hand.store);
        EXPECT_FALSE(!waiting.empty() && result.Saved());
        for (const Meant& each : meant)
            CheckArrived(each, after, waiting, result, decided);
        CheckNothingElse(before, after, meant);
    }

    /// A change that does not wait any more is there, or the operator was told or has decided.
    static void CheckArrived(const Meant& meant, const World& after,
                             const std::vector<WaitingChange>& waiting, const SendResult& result,
                             const std::set<std::size_t>& decided) {
        const WaitingChange& change = meant.change;
        const bool ofPrivileges = change.kind == Kind::PrivilegesChanged;
        for (const WaitingChange& other : waiting) {
            if (ofPrivileges ? other.kind == change.kind && other.id == change.id
                             : other.kind != Kind::PrivilegesChanged && other.row == change.row)
                return;
        }
        const std::string what =
            change.account + " " + change.what + " " + change.before + " -> " + change.after;
        if (ofPrivileges) {
            // Where both hands changed them the operator is told.
            EXPECT_TRUE(after.PrivilegesOf(change.id) == change.after || !result.notes.empty()) << what;
            return;
        }
        const auto row = after.rows.find(meant.newId);
        const bool isThere = row != after.rows.end() && row->second[Index(Field::Name)] == meant.newName;
        if (change.kind == Kind::Deleted) {
            EXPECT_NE(after.NameOf(meant.id), meant.name) << what;
            return;
        }
        EXPECT_TRUE(isThere) << what;
        if (change.kind == Kind::FieldChanged && isThere && !decided.contains(change.row)) {
            EXPECT_EQ(FieldText(change.field, *row->second[Index(change.field)]), change.after) << what;
        }
    }

    /// Every difference is one that was meant for that very account.
    static void CheckNothingElse(const World& before, const World& after, const std::vector<Meant>& meant) {
        std::set<std::pair<std::int32_t, std::string>> touched;
        std::set<std::pair<std::int32_t, std::string>> made;
        for (const Meant& each : meant) {
            touched.emplace(each.id, each.name);
            made.emplace(each.newId, each.newName);
        }
        for (const auto& [id, texts] : before.rows) {
            const bool isSame = after.rows.contains(id) && after.rows.at(id) == texts;
            EXPECT_TRUE(isSame || touched.contains({id, before.NameOf(id)}))
                << id << " " << before.NameOf(id);
        }
        std::set<std::string> names;
        for (const auto& [id, texts] : after.rows) {
            EXPECT_TRUE(before.rows.contains(id) || made.contains({id, after.NameOf(id)}))
                << id << " " << after.NameOf(id);
            EXPECT_TRUE(names.insert(after.NameOf(id)).second) << "two of " << after.NameOf(id);
        }
        for (std::int32_t id = 1; id <= 12; ++id) {
            const std::string now = after.PrivilegesOf(id);
            if (now == before.PrivilegesOf(id))
                continue;
            const auto change = std::ranges::find_if(meant, [id](const Meant& each) {
                return each.change.kind == Kind::PrivilegesChanged && each.change.id == id;
            });
            ASSERT_NE(change, meant.end()) << "privileges of " << id << " became " << now;
            // Only the account that they were meant for gets any.
            EXPECT_TRUE(now == PrivilegesText(std::nullopt) || after.NameOf(id) == change->newName) << id;
        }
    }

    std::mt19937 random;
    support::TempFolder folder;
    std::string file = folder / "database\\id_table.txt";
    Hand hands[2];
};

TEST_F(AccountsRun, NoAccountOrPrivilegeIsLostOrGivenAway) {
    for (unsigned seed = 1; seed <= static_cast<unsigned>(Times(2, 20)); ++seed) {
        random.seed(seed);
        for (int step = 0; step < 400; ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
            Hand& hand = hands[Any(2)];
            const int what = Any(100);
            if (what < 40)
                ChangeAny(hand);
            else if (what < 48)
                AddOne(hand);
            else if (what < 53)
                DeleteOne(hand);
            else if (what < 58)
                TakeOneBack(hand);
            else if (what < 68)
                Game();
            else if (what < 73)
                HandInFile();
            else if (what < 92)
                Save(hand);
            else if (what < 97)
                Reload(hand);
            else
                for (const auto& id :
                     support::Rows(root, "SELECT ID FROM information_schema.processlist WHERE "
                                         "ID <> CONNECTION_ID() AND DB = 'glogin'"))
                    // One that has gone by itself meanwhile is an error to the server.
                    support::ErrorNumber([&] { root.Execute("KILL " + id); });
            if (HasFailure())
                return;
        }
        // A server that goes away takes nothing along.
        {
            const support::ServerDown down;
            for (Hand& hand : hands) {
                ChangeAny(hand);
                const auto waiting = WaitingChanges(hand.store).size();
                EXPECT_EQ(support::Run(accounts::Send(hand.store)).stopped, waiting > 0);
                EXPECT_EQ(WaitingChanges(hand.store).size(), waiting);
            }
        }
        root.Open(support::RootConnection());
        for (Hand& hand : hands)
            Save(hand);
    }
}

} // namespace
