#include "AccountHands.h"
#include "Faults.h"

#include "database/Query.h"
#include "servers/Servers.h"
#include "support/Database.h"

#include <map>
#include <random>

namespace {

using namespace accounts;
using Kind = WaitingChange::Kind;
using OptionalPrivileges = std::optional<Privileges>;

/// What server and privilege file hold at one moment.
struct World {
    std::map<std::int32_t, FieldTexts> rows;
    std::map<std::int32_t, Privileges> privileges;

    std::string NameOf(std::int32_t id) const {
        const auto row = rows.find(id);
        return row == rows.end() ? "" : *row->second[Index(Field::Name)];
    }
    OptionalPrivileges PrivilegesOf(std::int32_t id) const {
        const auto row = privileges.find(id);
        return row == privileges.end() ? std::nullopt : OptionalPrivileges(row->second);
    }
};

/// A change as its operator means it: the account that it is for, and what it makes of it.
struct Meant {
    WaitingChange change;
    /// Number and name on the server, as the operator knows them, and what they become.
    std::int32_t id = 0;
    std::string name;
    std::int32_t newId = 0;
    std::string newName;
    /// What else they may be there since a Save was not answered.
    std::set<Hand::Identity> inDoubt;
    /// Of a change of privileges: as the operator knows them, and what they become.
    OptionalPrivileges known;
    OptionalPrivileges mine;

    bool OfPrivileges() const { return change.kind == Kind::PrivilegesChanged; }
    bool StillIn(const std::vector<WaitingChange>& waiting) const {
        return std::ranges::any_of(waiting, [this](const WaitingChange& other) {
            return OfPrivileges() ? other.kind == change.kind && other.id == change.id
                                  : other.kind != Kind::PrivilegesChanged && other.row == change.row;
        });
    }
    /// What becomes of privileges that the file has by now.
    OptionalPrivileges Made(OptionalPrivileges there) const {
        if (!known || !mine || !there)
            return mine;
        for (std::size_t i = 0; i < there->size(); ++i) {
            if ((*known)[i] != (*mine)[i])
                (*there)[i] = (*mine)[i];
        }
        return there;
    }
};

std::ostream& operator<<(std::ostream& out, const Meant& meant) {
    const WaitingChange& change = meant.change;
    return out << change.account << " " << change.what << " " << change.before << " -> " << change.after;
}

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
        support::WriteFile(folder / "Kerno.ini", "gloginname=root\r\ngloginpass=\r\n");
        modServerControl::KernoPath(folder.Path() + "\\");
    }

    void Begin(unsigned seed) {
        random.seed(seed);
        hands.clear();
        root.Execute("TRUNCATE TABLE glogin.account");
        for (int i = 1; i <= 6; ++i)
            GameAdds(i, "name" + std::to_string(i));
        support::WriteFile(file, "ID\r\n3" + Flags(7) + "\r\n// by hand\r\n");
        hands.push_back(std::make_unique<HandAtEditor>());
        hands.push_back(std::make_unique<HandWithoutWindow>(folder.Path()));
    }

    int Any(int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); }
    std::string AnyName() { return "name" + std::to_string(1 + Any(12)); }
    std::string AnyText() { return "text" + std::to_string(Any(50)); }
    template <class T> const T& AnyOf(const std::vector<T>& all) {
        return all[static_cast<std::size_t>(Any(static_cast<int>(all.size())))];
    }
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
                world.privileges.try_emplace(row.id, row.flags);
        }
        return world;
    }

    // ---- What the hands do

    void ChangeAny(Hand& hand) {
        const auto rows = hand.Store().Rows();
        const auto shown = rows.empty() ? std::nullopt : hand.Show(AnyOf(rows));
        if (!shown)
            return;
        AccountEdit edit = *shown;
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
        const AccountFields& was = shown->fields;
        const AccountFields& is = edit.fields;
        if ((is.name == was.name || hand.Store().CheckAccountName(is.name)) &&
            (is.id == was.id || hand.Store().CheckAccountID(std::stoi(is.id))))
            hand.Type(edit);
    }
    void AddOne(Hand& hand) {
        AccountEdit edit;
        edit.fields = {AnyName(), std::to_string(1 + Any(12)), AnyText(), AnyText()};
        edit.sex = static_cast<std::int16_t>(Any(2));
        edit.isGameMaster = Any(2) == 1;
        edit.privileges[static_cast<std::size_t>(Any(15))] = 1;
        if (hand.Store().CheckAccountName(edit.fields.name) &&
            hand.Store().CheckAccountID(std::stoi(edit.fields.id)))
            hand.Add(edit);
    }
    void DeleteOne(Hand& hand) {
        if (const auto rows = hand.Store().Rows(); !rows.empty())
            hand.Delete(AnyOf(rows));
    }
    void TakeOneBack(Hand& hand) {
        if (const auto count = WaitingChanges(hand.Store()).size(); count > 0)
            hand.TakeBack(static_cast<std::size_t>(Any(static_cast<int>(count))));
    }
    void Reload(Hand& hand) {
        hand.Reload();
        hand.inDoubt.clear();
        EXPECT_TRUE(WaitingChanges(hand.Store()).empty());
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
    void KillConnections() {
        for (const auto& id : support::Rows(root, "SELECT ID FROM information_schema.processlist WHERE "
                                                  "ID <> CONNECTION_ID() AND DB = 'glogin'"))
            // One that has gone by itself meanwhile is an error to the server.
            support::ErrorNumber([&] { root.Execute("KILL " + id); });
    }
    /// Until the server has done what it was asked for on the connection that has broken since: the sessions
    /// of the other hands stay.
    void AwaitTheServer() {
        EXPECT_TRUE(support::WaitUntil([this] {
            return support::Rows(root, "SELECT ID FROM information_schema.processlist WHERE DB = 'glogin'")
                       .size() < hands.size();
        }));
    }

    // ---- What becomes of it

    static std::vector<Meant> MeantBy(Hand& hand) {
        std::vector<Meant> all;
        clsAccountSQL& store = hand.Store();
        const auto privileges = store.GMData().Changes();
        for (const WaitingChange& change : WaitingChanges(store)) {
            Meant meant;
            meant.change = change;
            auto row = std::optional(change.row);
            if (meant.OfPrivileges()) {
                row = store.RowOfAccount(change.id);
                const auto own = std::ranges::find(privileges, change.id, &GMTable::Change::id);
                meant.known = own->before;
                meant.mine = own->after;
            }
            if (row) {
                meant.newId = std::stoi(store.Text(*row, Field::Id));
                meant.newName = store.Text(*row, Field::Name);
                meant.id = std::stoi(store.ServerText(*row, Field::Id).value_or("0"));
                meant.name = store.ServerText(*row, Field::Name).value_or("");
                if (hand.inDoubt.contains(*row))
                    meant.inDoubt = hand.inDoubt.at(*row);
            }
            all.push_back(meant);
        }
        return all;
    }

    static void RememberDoubts(Hand& hand, const World& before, const World& after,
                               const std::vector<Meant>& meant) {
        for (const Meant& each : meant) {
            if (each.OfPrivileges())
                continue;
            std::set<Hand::Identity>& all = hand.inDoubt[each.change.row];
            all.insert(each.inDoubt.begin(), each.inDoubt.end());
            all.insert({{each.id, each.name}, {each.newId, each.newName}});
            // Changes of one row are sent one after the other.
            for (const auto& row : after.rows) {
                if (before.NameOf(row.first) != after.NameOf(row.first))
                    all.emplace(row.first, after.NameOf(row.first));
            }
        }
    }

    /// Saves, and compares what became of the world with what was meant.
    void Save(Hand& hand, bool cut = false) {
        hand.Keep();
        const World before = Look();
        auto meant = MeantBy(hand);
        auto* const withoutWindow = dynamic_cast<HandWithoutWindow*>(&hand);
        if (cut && withoutWindow)
            withoutWindow->Cut();
        const Told told = hand.Save([this](Field) { return Any(2) == 1; });
        hand.inDoubt.clear();
        if (told.stopped)
            AwaitTheServer();
        const World after = Look();
        if (told.stopped)
            RememberDoubts(hand, before, after, meant);
        const auto waiting = WaitingChanges(hand.Store());
        EXPECT_FALSE(!waiting.empty() && told.saved);
        // An editor without an account to show has nothing to save.
        EXPECT_TRUE(told.saved || !waiting.empty() || meant.empty());
        for (const Meant& each : meant) {
            if (!each.StillIn(waiting) && !each.OfPrivileges())
                CheckArrived(each, after, told, meant);
        }
        for (Meant& each : meant) {
            if (!each.StillIn(waiting) || each.OfPrivileges())
                continue;
            // Of several changes of a row some have got there.
            if (const auto id = hand.Store().ServerText(each.change.row, Field::Id)) {
                each.newId = std::stoi(*id);
                each.newName = *hand.Store().ServerText(each.change.row, Field::Name);
            }
            if (told.stopped)
                each.inDoubt = hand.inDoubt.at(each.change.row);
        }
        CheckRows(before, after, meant);
        CheckPrivileges(before, after, meant, waiting, told);
    }

    static bool IsAdded(const std::vector<Meant>& meant, std::int32_t id, const std::string& name) {
        return std::ranges::any_of(meant, [&](const Meant& each) {
            return each.change.kind == Kind::Added && each.newId == id && each.newName == name;
        });
    }

    /// A change of an account that does not wait any more is there, or the operator has decided otherwise.
    static void CheckArrived(const Meant& meant, const World& after, const Told& told,
                             const std::vector<Meant>& all) {
        const auto row = after.rows.find(meant.newId);
        const bool isThere = row != after.rows.end() && row->second[Index(Field::Name)] == meant.newName;
        if (meant.change.kind == Kind::Deleted) {
            EXPECT_TRUE(after.NameOf(meant.id) != meant.name || IsAdded(all, meant.id, meant.name)) << meant;
            return;
        }
        EXPECT_TRUE(isThere) << meant;
        if (meant.change.kind == Kind::FieldChanged && isThere && !told.decided.contains(meant.change.row)) {
            const Field field = meant.change.field;
            EXPECT_EQ(FieldText(field, *row->second[Index(field)]), meant.change.after) << meant;
        }
    }

    /// Every difference is one that was meant for that very account, down to the single field.
    static void CheckRows(const World& before, const World& after, const std::vector<Meant>& meant) {
        for (const auto& [id, texts] : before.rows) {
            std::set<Field> changed;
            std::int32_t newId = id;
            bool isDeleted = false;
            bool isInDoubt = false;
            for (const Meant& each : meant) {
                const bool couldBe = each.inDoubt.contains({id, before.NameOf(id)});
                if ((!couldBe && (each.id != id || each.name != before.NameOf(id))) || each.OfPrivileges())
                    continue;
                isInDoubt = isInDoubt || couldBe;
                // An account may have been deleted and added again.
                if (couldBe || IsAdded(meant, id, each.name))
                    changed.insert(kFields.begin(), kFields.end());
                isDeleted = isDeleted || each.change.kind == Kind::Deleted;
                changed.insert(each.change.field);
                newId = each.newId;
            }
            const auto same = after.rows.find(id);
            const bool stays =
                same != after.rows.end() && (same->second[Index(Field::Name)] == texts[Index(Field::Name)] ||
                                             (newId == id && changed.contains(Field::Name)));
            const auto now = stays ? same : after.rows.find(newId);
            if (!stays && (isDeleted || isInDoubt))
                continue;
            ASSERT_NE(now, after.rows.end()) << id << " " << before.NameOf(id) << " is gone";
            for (const Field field : kFields) {
                EXPECT_TRUE(changed.contains(field) || now->second[Index(field)] == texts[Index(field)])
                    << FieldName(field) << " of " << id << " " << before.NameOf(id);
            }
        }
        std::set<std::string> names;
        for (const auto& [id, texts] : after.rows) {
            const std::string name = after.NameOf(id);
            EXPECT_TRUE(before.rows.contains(id) || std::ranges::any_of(meant,
                                                                        [&, number = id](const Meant& each) {
                                                                            return each.newId == number &&
                                                                                   each.newName == name;
                                                                        }))
                << id << " " << name;
            EXPECT_TRUE(names.insert(name).second) << "two of " << name;
        }
    }

    static void CheckPrivileges(const World& before, const World& after, const std::vector<Meant>& meant,
                                const std::vector<WaitingChange>& waiting, const Told& told) {
        for (std::int32_t id = 1; id <= 12; ++id) {
            const OptionalPrivileges was = before.PrivilegesOf(id);
            const OptionalPrivileges now = after.PrivilegesOf(id);
            const auto change = std::ranges::find_if(
                meant, [id](const Meant& each) { return each.OfPrivileges() && each.change.id == id; });
            const std::string what =
                std::to_string(id) + ": " + PrivilegesText(was) + " -> " + PrivilegesText(now);
            if (change == meant.end() || change->StillIn(waiting)) {
                EXPECT_EQ(now, was) << what;
                continue;
            }
            // Where somebody else has given the number new ones, they may stay, and the operator is told.
            EXPECT_TRUE(now == change->Made(was) || (now == was && told.noted))
                << what << ", meant: " << *change;
            // Only the account that they were meant for gets any.
            EXPECT_TRUE(!now || now == was || after.NameOf(id) == change->newName) << what;
        }
    }

    void Step() {
        Hand& hand = *AnyOf(hands);
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
            Save(hand, what < 78);
        else if (what < 97)
            Reload(hand);
        else
            KillConnections();
    }

    std::mt19937 random;
    support::TempFolder folder;
    std::string file = folder / "database\\id_table.txt";
    std::vector<std::unique_ptr<Hand>> hands;
};

TEST_F(AccountsRun, NoAccountOrPrivilegeIsLostOrGivenAway) {
    for (unsigned seed = 1; seed <= static_cast<unsigned>(Times(2, 4)); ++seed) {
        Begin(seed);
        for (int step = 0; step < Times(150, 2000); ++step) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
            Step();
            if (HasFailure())
                return;
        }
        // A server that goes away takes nothing along.
        {
            const support::ServerDown down;
            for (const auto& hand : hands) {
                ChangeAny(*hand);
                hand->Keep();
                const auto waiting = WaitingChanges(hand->Store()).size();
                EXPECT_EQ(hand->Save([](Field) { return true; }).stopped, waiting > 0);
                EXPECT_EQ(WaitingChanges(hand->Store()).size(), waiting);
            }
        }
        root.Open(support::RootConnection());
        for (const auto& hand : hands)
            Save(*hand);
    }
}

} // namespace
