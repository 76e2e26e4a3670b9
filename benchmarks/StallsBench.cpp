#include "Panel.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace {

using modServerControl::Server;
using Clock = std::chrono::steady_clock;

double MillisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Posts a message to this thread again and again, and keeps the longest time until one was dispatched.
class Heartbeat {
public:
    Heartbeat()
        : window_(CreateWindowExA(0, "STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr)) {
        SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Procedure));
        thread_ = std::thread([this] { Beat(); });
    }
    ~Heartbeat() {
        ended_ = true;
        thread_.join();
        DestroyWindow(window_);
    }
    Heartbeat(const Heartbeat&) = delete;

    void Reset() { longest_ = 0; }
    double Longest() const { return longest_; }

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
        if (message != WM_APP)
            return DefWindowProcA(window, message, first, second);
        reinterpret_cast<Heartbeat*>(GetWindowLongPtrA(window, GWLP_USERDATA))->dispatched_ = true;
        return 0;
    }
    void Beat() {
        while (!ended_) {
            const auto start = Clock::now();
            dispatched_ = false;
            PostMessageA(window_, WM_APP, 0, 0);
            while (!dispatched_ && !ended_)
                Sleep(1);
            longest_ = std::max(longest_.load(), MillisecondsSince(start));
            Sleep(2);
        }
    }

    HWND window_;
    std::thread thread_;
    std::atomic<bool> ended_ = false;
    std::atomic<bool> dispatched_ = false;
    std::atomic<double> longest_ = 0;
};

/// What lies over the control panel while the zone server crashes.
struct State {
    const char* name;
    std::function<void(bench::Panel&)> begin;
    std::function<void(bench::Panel&)> end;
};

void CloseWindowNamed(const char* title) {
    PostMessageA(FindWindowA(nullptr, title), WM_CLOSE, 0, 0);
}

const State kStates[] = {
    {"nothing else", {}, {}},
    {"settings dialog open",
     [](bench::Panel& panel) {
         PostMessageA(panel.form.Window(), WM_COMMAND, IDM_frmServerControl_mnuSettings, 0);
     },
     [](bench::Panel&) { CloseWindowNamed("Kerno Tools :: Server Control Settings"); }},
    {"menu open",
     [](bench::Panel& panel) { PostMessageA(panel.form.Window(), WM_SYSCOMMAND, SC_KEYMENU, ' '); },
     [](bench::Panel& panel) { PostMessageA(panel.form.Window(), WM_CANCELMODE, 0, 0); }},
    {"200 error dialogs to close",
     [](bench::Panel& panel) {
         panel.surroundings.servers.Command(Server::Login, standin::Command::RaiseDialogs, 200);
     },
     {}},
};

/// Crashes the zone server some times; the longest time until its new window.
double LongestRestart(const support::ServerFolder& servers) {
    constexpr int kCrashes = 4;
    constexpr double kLimit = 20'000;
    double longest = 0;
    for (int i = 0; i < kCrashes; ++i) {
        const HWND old = servers.MainWindow(Server::Zone);
        const auto start = Clock::now();
        servers.Command(Server::Zone, standin::Command::Crash);
        const auto back = [&] {
            const HWND fresh = servers.MainWindow(Server::Zone);
            return fresh && fresh != old && IsWindowVisible(fresh);
        };
        while (!back() && MillisecondsSince(start) < kLimit)
            Sleep(5);
        longest = std::max(longest, MillisecondsSince(start));
        // A crash comes at any moment between two checks.
        Sleep(100 + 270 * static_cast<DWORD>(i));
    }
    return longest;
}

const bench::Area stalls("stalls", [] {
    constexpr DWORD kUntilItIsThere = 500;
    bench::Panel panel;
    panel.form.errorDetector.tmrErrorDetector.Enabled(true);
    for (const State& state : kStates) {
        Heartbeat heartbeat;
        std::atomic<bool> over = false;
        double restart = 0;
        double gap = 0;
        if (state.begin)
            state.begin(panel);
        // Whatever runs a message loop of its own on this thread, the measurement goes on.
        std::thread measuring([&] {
            Sleep(kUntilItIsThere);
            heartbeat.Reset();
            restart = LongestRestart(panel.surroundings.servers);
            gap = heartbeat.Longest();
            if (state.end)
                state.end(panel);
            over = true;
        });
        support::WaitUntil([&] { return over.load(); }, std::chrono::minutes(3));
        measuring.join();
        bench::Row("crash to new window, the longest", state.name, restart, "ms");
        bench::Row("time without a dispatched message, the longest", state.name, gap, "ms");
    }
});

} // namespace
