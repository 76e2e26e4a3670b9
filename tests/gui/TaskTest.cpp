#include "frmSample.h"

#include "gui/Aside.h"
#include "gui/MsgBox.h"

#include "gui/TaskWaits.h"
#include "support/MessageBoxes.h"
#include "support/Wait.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

using namespace std::chrono_literals;
using gui::Task;

Task<int> Double(int number) {
    co_await gui::NextTurn();
    if (number < 0)
        throw RuntimeError(6);
    co_return number * 2;
}

Task<int> Sum(int count) {
    int sum = 0;
    for (int i = 0; i < count; ++i) {
        const int doubled = co_await Double(i);
        sum += doubled;
    }
    co_return sum;
}

TEST(Task, HandsResultsAndErrorsToWhoeverAwaitsIt) {
    EXPECT_EQ(support::Run(Sum(1000)), 999'000);
    EXPECT_THROW(support::Run(Double(-1)), RuntimeError);
}

/// Notes its end, whichever way it comes.
struct Note {
    ~Note() { log.push_back(name); }
    std::vector<std::string>& log;
    std::string name;
};

Task<> Inner(std::vector<std::string>& log, gui::Event& event) {
    const Note note{log, "inner left"};
    co_await event.Happened();
    log.push_back("event seen");
}

Task<> Outer(std::vector<std::string>& log, gui::Event& event) {
    const Note note{log, "outer left"};
    co_await Inner(log, event);
    log.push_back("inner over");
}

TEST(Task, EndsWhereItWaitsWhenItsOwnerGoes) {
    std::vector<std::string> log;
    gui::Event event;
    {
        gui::Tasks tasks;
        tasks.Start(Outer(log, event),
                    [&](std::exception_ptr error) { log.push_back(error ? "error" : "ended"); });
        EXPECT_TRUE(tasks.Any());
    }
    const std::vector<std::string> ended{"inner left", "outer left", "ended"};
    EXPECT_EQ(log, ended);
    event.Set();
    EXPECT_EQ(support::Run(Double(1)), 2);
    EXPECT_EQ(log, ended) << "what it waited for came back to it";
}

Task<> EndsItsOwner(std::unique_ptr<gui::Tasks>& owner, std::vector<std::string>& log) {
    const Note note{log, "left"};
    owner.reset();
    log.push_back("goes on to its next wait");
    co_await gui::NextTurn();
    log.push_back("goes on behind it");
}

TEST(Task, MayEndItsOwnOwner) {
    std::vector<std::string> log;
    auto owner = std::make_unique<gui::Tasks>();
    owner->Start(EndsItsOwner(owner, log));
    EXPECT_EQ(log, (std::vector<std::string>{"goes on to its next wait", "left"}));
}

Task<> Turns(int& turns, const bool& stop) {
    while (!stop) {
        ++turns;
        co_await gui::NextTurn();
    }
}

TEST(Task, LetsTimersAndPaintingsRunBetweenItsTurns) {
    int turns = 0;
    bool stop = false;
    gui::Tasks tasks;
    tasks.Start(Turns(turns, stop));
    int ticks = 0;
    const support::Meanwhile timer([&] { ++ticks; });
    EXPECT_TRUE(support::WaitUntil([&] { return ticks >= 5 && turns >= 50; }));
    stop = true;
    EXPECT_TRUE(support::WaitUntil([&] { return !tasks.Any(); }));
}

Task<std::string> CallAside(int number) {
    auto call = [number, suffix = std::make_shared<std::string>("!")] {
        if (number < 0)
            throw RuntimeError(6);
        return std::to_string(number) + *suffix;
    };
    std::string text = co_await gui::Aside(call);
    co_return text;
}

Task<> WaitAside(std::shared_ptr<std::atomic<bool>> release) {
    auto call = [release] {
        while (!*release)
            Sleep(1);
    };
    co_await gui::Aside(call);
}

TEST(Aside, MakesCallsAndHandsOverWhatTheyRaise) {
    for (int i = 0; i < 200; ++i)
        ASSERT_EQ(support::Run(CallAside(i)), std::to_string(i) + "!");
    EXPECT_THROW(support::Run(CallAside(-1)), RuntimeError);
}

TEST(Aside, ACallThatDoesNotComeBackHoldsNothingUpAndCanBeAbandoned) {
    const auto release = std::make_shared<std::atomic<bool>>(false);
    {
        gui::Tasks tasks;
        tasks.Start(WaitAside(release));
        EXPECT_TRUE(tasks.Any());
        EXPECT_EQ(support::Run(CallAside(1)), "1!");
        EXPECT_TRUE(gui::CallsAreAside());
    }
    *release = true;
    EXPECT_TRUE(support::WaitUntil([] { return !gui::CallsAreAside(); }));
    EXPECT_EQ(release.use_count(), 1) << "the abandoned call still holds what it was given";
}

Task<> NoteWhenOver(std::shared_ptr<std::atomic<bool>> release, const int& ticks, int& ticksBefore) {
    co_await WaitAside(release);
    ticksBefore = ticks;
}

TEST(Aside, ACallThatIsOverLetsWhatIsDueGoFirst) {
    const auto release = std::make_shared<std::atomic<bool>>(false);
    int ticks = 0;
    int ticksBefore = 0;
    gui::Tasks tasks;
    tasks.Start(NoteWhenOver(release, ticks, ticksBefore));
    const support::Meanwhile timer([&] { ++ticks; });
    *release = true;
    const auto limit = std::chrono::steady_clock::now() + 20s;
    const auto bothAreDue = [] { return !gui::CallsAreAside() && HIWORD(GetQueueStatus(QS_TIMER)) != 0; };
    // Without handing out messages.
    while (!bothAreDue() && std::chrono::steady_clock::now() < limit)
        Sleep(1);
    EXPECT_TRUE(bothAreDue());
    EXPECT_TRUE(support::WaitUntil([&] { return !tasks.Any(); }));
    EXPECT_GT(ticksBefore, 0);
}

Task<> Ask(std::vector<int>& answers) {
    const int answer = co_await gui::MsgBox("Go on ?", MB_YESNO | MB_ICONQUESTION, "Question");
    answers.push_back(answer);
}

TEST(MsgBox, LooksAndAnswersAsTheSystemsBoxDoes) {
    support::MessageBoxes boxes;
    std::vector<int> answers;
    for (const int button : {IDYES, IDNO}) {
        boxes.Answer(button);
        support::Run(Ask(answers));
    }
    EXPECT_EQ(answers, (std::vector<int>{IDYES, IDNO}));
    const support::SeenBox seen{"Question", "Go on ?", MB_YESNO | MB_ICONQUESTION};
    EXPECT_EQ(boxes.Seen(), (std::vector{seen, seen}));
}

TEST(MsgBox, BoxesDoNotHoldEachOther) {
    // Answered in the order in which they came: with loops of their own the first would wait for the second.
    std::vector<int> first, second;
    gui::Tasks tasks;
    tasks.Start(Ask(first));
    const HWND lower = FindWindowA("#32770", "Question");
    tasks.Start(Ask(second));
    PostMessageA(lower, WM_COMMAND, IDYES, 0);
    EXPECT_TRUE(support::WaitUntil([&] { return !first.empty(); }));
    EXPECT_TRUE(second.empty());
    PostMessageA(FindWindowA("#32770", "Question"), WM_COMMAND, IDNO, 0);
    EXPECT_TRUE(support::WaitUntil([&] { return !second.empty(); }));
}

TEST(MsgBox, ATellingThatIsOpenDoesNotComeAgain) {
    support::MessageBoxes boxes;
    for (int i = 0; i < 20; ++i)
        gui::Tell("It failed.", MB_OK, "Told");
    EXPECT_TRUE(support::Settle());
    EXPECT_EQ(boxes.Texts(), std::vector<std::string>{"It failed."});
}

} // namespace
