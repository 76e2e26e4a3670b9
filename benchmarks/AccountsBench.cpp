#include "accounts/frmAccountChanges.h"
#include "accounts/frmAccountEditor.h"
#include "database/Query.h"
#include "Databases.h"
#include "gui/Application.h"
#include "support/MessageBoxes.h"
#include "Surroundings.h"

#include <stdexcept>

namespace {

constexpr int kRuns = 5;

void Done(std::int16_t result) {
    if (result != 1)
        throw std::runtime_error("the account store refuses");
}

std::string NameOf(int number) {
    return "account" + std::to_string(number);
}

void MeasureStore(support::Client& root, int accounts) {
    const bench::Size size(accounts, "accounts");
    const double read =
        bench::MedianOf(kRuns, [&] { database::ReadAll(root.Session(), "SELECT * FROM glogin.account"); });
    clsAccountSQL store;
    store.SQLHostname(support::kLocalServer);
    store.SQLUsername("root");
    const double open = bench::MedianOf(kRuns, [&] { Done(support::Run(store.ConnectSQL())); });
    bench::Row("store: open", size, open, "ms", {read, "reading the rows"});
    bench::Row("store: GetUniqueAccountID", size, bench::PerRun(kRuns, [&] { store.GetUniqueAccountID(); }),
               "ms");
    int next = 0;
    const auto move = [&] { Done(store.MoveToAccount(NameOf(1 + next++ * 997 % accounts))); };
    bench::Row("store: switch", size, bench::PerRun(1000, move), "ms");
    for (const int changes : {1, 100}) {
        std::vector<double> times;
        for (int run = 0; run < kRuns; ++run) {
            for (int i = 0; i < changes; ++i) {
                move();
                store.AccountPassword("changed" + std::to_string(next));
                Done(store.SaveCurrentRecord());
            }
            times.push_back(bench::Milliseconds([&] { Done(support::Run(store.UpdateAccountSQL())); }));
        }
        bench::Row("store: save of " + std::to_string(changes) + " changed", size, bench::Median(times),
                   "ms");
    }
}

/// Until an account is shown and drawn. Looks after each message, as those that list the names go on for
/// long.
void WaitForAccount(frmAccountEditor& form) {
    constexpr ULONGLONG kLimit = 60'000;
    const ULONGLONG end = GetTickCount64() + kLimit;
    for (MSG message; form.txtAccountID.Text().empty();) {
        if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
            gui::Dispatch(message);
        else
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
        if (GetTickCount64() > end)
            throw std::runtime_error("the editor shows no account");
    }
    RedrawWindow(form.Window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

void MeasureEditor(int accounts) {
    const bench::Size size(accounts, "accounts");
    support::MessageBoxes boxes;
    frmAccountEditor form;
    std::vector<double> opens;
    std::vector<double> lists;
    for (int i = 0; i < kRuns; ++i) {
        form.Unload();
        opens.push_back(bench::Milliseconds([&] {
            form.Show();
            WaitForAccount(form);
        }));
        lists.push_back(opens.back() + bench::Milliseconds([] { support::Settle(); }));
    }
    bench::Row("editor: open, until an account is shown", size, bench::Median(opens), "ms");
    bench::Row("editor: open, until all names are listed", size, bench::Median(lists), "ms");
    const auto fillID = [&] { form.cmdAutofillID.Press(); };
    bench::Row("editor: fill in a free number", size, bench::PerRun(kRuns, fillID), "ms");
    form.cmdReload.Press();
    support::Settle();
    int next = 0;
    const auto choose = [&] { form.cboAccountName.ListIndex(next++ * 997 % accounts); };
    choose();
    bench::Row("editor: switch", size, bench::PerRun(50, choose), "ms");
    if (!boxes.Seen().empty())
        throw std::runtime_error("the editor says: " + boxes.Texts()[0]);
    std::vector<double> saves;
    std::vector<double> answers;
    for (int i = 0; i < kRuns; ++i) {
        form.txtEmail.Text("new" + std::to_string(i) + "@example.org");
        const std::size_t seen = boxes.Seen().size();
        saves.push_back(bench::Milliseconds([&] {
            form.cmdSave.Press();
            support::WaitUntil([&] { return boxes.Seen().size() > seen; });
        }));
        answers.push_back(saves.back() + bench::Milliseconds([] { support::Settle(); }));
    }
    bench::Row("editor: save, until it is told", size, bench::Median(saves), "ms");
    bench::Row("editor: save, until that is answered", size, bench::Median(answers), "ms");
}

void MeasureWaitingChanges(int accounts) {
    const bench::Size size(accounts, "accounts");
    clsAccountSQL store;
    store.SQLHostname(support::kLocalServer);
    store.SQLUsername("root");
    Done(support::Run(store.ConnectSQL()));
    constexpr int kChanges = 1000;
    for (int i = 1; i <= kChanges; ++i) {
        Done(store.MoveToAccount(NameOf(i)));
        store.AccountPassword("changed");
        Done(store.SaveCurrentRecord());
    }
    gui::Local<frmAccountChanges> list(store);
    std::vector<double> opens;
    for (int i = 0; i < kRuns; ++i) {
        list->Unload();
        opens.push_back(bench::Milliseconds([&] {
            list->Show();
            UpdateWindow(list->Window());
        }));
    }
    bench::Row("editor: list of 1,000 changes", size, bench::Median(opens), "ms");
    bench::Row("editor: count of 1,000 changes", size,
               bench::PerRun(50, [&] { accounts::WaitingAccounts(store); }), "ms");
}

const bench::Area accountsArea("accounts", [] {
    const bench::Surroundings surroundings;
    const std::string& kerno = surroundings.servers.Path();
    CreateDirectoryA((kerno + "database").c_str(), nullptr);
    support::WriteFile(kerno + "Kerno.ini", "gloginname=root\r\ngloginpass=\r\n");
    support::WriteFile(kerno + "database\\id_table.txt",
                       "header\r\n100001,1,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n");
    support::Client root;
    root.Open(support::RootConnection());
    for (const int accounts : {1000, 10'000, 100'000}) {
        bench::FillAccounts(root, accounts);
        MeasureStore(root, accounts);
        MeasureEditor(accounts);
        MeasureWaitingChanges(accounts);
    }
    bench::DropDatabases(root);
});

} // namespace
