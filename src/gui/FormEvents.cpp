#include "gui/Accessible.h"
#include "gui/Control.h"
#include "gui/Focus.h"
#include "gui/Form.h"
#include "gui/Help.h"
#include "gui/Menu.h"
#include "gui/Scrolling.h"
#include "gui/Timer.h"
#include "gui/ToolTips.h"

#include <algorithm>
#include <new>

namespace gui {

namespace {

UINT TaskbarCreatedMessage() {
    static const UINT message = RegisterWindowMessageA("TaskbarCreated");
    return message;
}

POINT CornerOf(HWND window) {
    POINT corner{};
    ClientToScreen(window, &corner);
    return corner;
}

/// Posted by a form to itself when it has come to the front.
constexpr UINT kRegainFocus = WM_APP + 1;

} // namespace

void Form::Raise(const std::function<void()>& handler) {
    struct OnStack {
        explicit OnStack(Form* innermost) : form(innermost) { form->Occupy(1); }
        ~OnStack() { form->Occupy(-1); }
        Form* form;
    } onStack(this);

    // No exception may cross the system's code that called us.
    try {
        handler();
    } catch (const RuntimeError& error) {
        Report(error);
    } catch (const std::bad_alloc&) {
        Report(RuntimeError(common::kOutOfMemory));
    } catch (const std::exception& error) {
        Report(RuntimeError(common::kInternalError, error.what()));
    }
}

void Form::Report(const RuntimeError& error) {
    try {
        Form_Error(error);
    } catch (const std::exception&) {
        // It could not even be told.
    }
}

void Form::Form_Error(const RuntimeError& error) {
    if (&Top() != this)
        return Top().Form_Error(error);
    Tell("Error " + std::to_string(error.Number()) + ": " + error.Description(), MB_ICONEXCLAMATION);
}

INT_PTR CALLBACK Form::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        auto& form = *reinterpret_cast<Form*>(lParam);
        form.window_ = window;
        SetWindowLongPtrA(window, DWLP_USER, lParam);
        try {
            form.Attach();
        } catch (...) {
            form.attachError_ = std::current_exception();
        }
        return TRUE;
    }
    auto* form = reinterpret_cast<Form*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!form || !form->window_)
        return FALSE;
    LRESULT result = 0;
    if (!form->Handle(message, wParam, lParam, result))
        return FALSE;
    if (IsWindow(window))
        SetWindowLongPtrA(window, DWLP_MSGRESULT, result);
    return TRUE;
}

bool Form::Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) {
    const auto x = static_cast<short>(LOWORD(lParam));
    const auto y = static_cast<short>(HIWORD(lParam));
    switch (message) {
    case WM_COMMAND:
        Command(LOWORD(wParam), HIWORD(wParam), lParam == 0);
        return true;
    case WM_NOTIFY: {
        auto& header = *reinterpret_cast<NMHDR*>(lParam);
        if (AnswerToolTips(window_, header))
            return true;
        Control* control = ControlOf(header.hwndFrom);
        bool used = false;
        if (control)
            Raise([&] { used = control->Notify(header, result); });
        return used;
    }
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (Control* control = ControlOf(item.hwndItem))
            Draw(*control, item);
        return true;
    }
    case WM_TIMER:
        for (Timer* timer : timers_)
            if (timer->Id() == wParam) {
                timer->Tick();
                return true;
            }
        return false;
    case WM_LBUTTONDOWN:
        MouseDown(MouseButton::Left, x, y);
        return true;
    case WM_RBUTTONDOWN:
        MouseDown(MouseButton::Right, x, y);
        return true;
    case WM_MBUTTONDOWN:
        MouseDown(MouseButton::Middle, x, y);
        return true;
    case WM_SYSCOMMAND:
        if ((wParam & 0xFFF0) != SC_KEYMENU || lParam != 0 || GetMenu(window_))
            return false;
        Raise([this] { Form_MenuKey(CornerOf(window_)); });
        return true;
    case WM_CONTEXTMENU:
        // By the keyboard; the mouse has its own events.
        if (lParam != -1)
            return false;
        Raise([&] {
            const auto control = reinterpret_cast<HWND>(wParam);
            Form_ContextMenu(control, CornerOf(control));
        });
        return true;
    case WM_ACTIVATE:
        // The dialog manager gives the focus back to the control that had it, which may be disabled by now.
        if (LOWORD(wParam) != WA_INACTIVE)
            PostMessageA(window_, kRegainFocus, 0, 0);
        return false;
    case kRegainFocus:
        if (GetActiveWindow() == window_ && !IsIconic(window_))
            RegainFocus(window_);
        return true;
    case WM_SIZE:
        Raise([this] { Form_Resize(); });
        MoveToolTips(window_);
        return true;
    case WM_HELP: {
        const auto chapter = HelpChapter(templateId_);
        if (!chapter)
            return false;
        result = TRUE;
        if (const std::string problem = ShowHelp(*chapter); !problem.empty())
            Tell(problem, MB_ICONINFORMATION);
        return true;
    }
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = smallest_;
        return true;
    case WM_ENDSESSION:
        if (wParam)
            Raise([this] { Form_EndSession(); });
        return true;
    case WM_CLOSE:
        Unload();
        return true;
    case WM_DESTROY:
        for (const Control* control : controls_)
            ForgetAccessibleName(control->window_);
        return false;
    case WM_NCDESTROY:
        Forget();
        return true;
    default:
        if (message == TaskbarCreatedMessage()) {
            Raise([this] { Form_TaskbarCreated(); });
            return true;
        }
        return false;
    }
}

void Form::Command(int id, int code, bool fromMenu) {
    if (id == IDCANCEL && !ControlOf(id)) {
        if (CommandButton* button = CancelButton())
            button->Press();
        return;
    }
    if (!fromMenu) {
        if (Control* control = ControlOf(id))
            control->Command(code);
        return;
    }
    for (MenuItem* item : menuItems_)
        if (item->Id() == id)
            return item->Choose();
}

void Form::Draw(Control& control, const DRAWITEMSTRUCT& item) {
    std::exception_ptr error;
    try {
        control.Draw(item);
    } catch (...) {
        error = std::current_exception();
    }
    // Told once, until it could be drawn again: the box that tells it uncovers the control when it closes.
    const bool told = std::exchange(control.drawingFailed_, error != nullptr);
    if (error && !told)
        Raise([&] { std::rethrow_exception(error); });
}

void Form::MouseDown(MouseButton button, int x, int y) {
    for (Control* control : controls_) {
        const RECT bounds = control->Bounds();
        if (PtInRect(&bounds, POINT{x, y}) && control->PressThrough(button, x - bounds.left, y - bounds.top))
            return;
    }
    Raise([&] { Form_MouseDown(button, x, y); });
}

Control* Form::ControlOf(HWND window) const {
    const auto found = std::ranges::find(controls_, window, &Control::Window);
    return found == controls_.end() ? nullptr : *found;
}

Control* Form::ControlOf(int id) const {
    const auto found = std::ranges::find(controls_, id, &Control::Id);
    return found == controls_.end() ? nullptr : *found;
}

bool Form::TranslateKey(MSG& message) {
    const HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    const auto found = std::ranges::find(LoadedForms(), root, &Form::Window);
    if (!root || found == LoadedForms().end())
        return false;
    // Other programs post keys to controls that are not seen, whose neighbours the dialog manager would look
    // for without end.
    if (!IsWindowVisible(message.hwnd))
        return false;
    const bool used = (*found)->Key(message) || IsDialogMessageA(root, &message);
    // The key may have moved the focus, and whoever types wants to see it.
    if (message.message == WM_KEYDOWN && IsWindow(root))
        ScrollIntoView(GetFocus());
    return used;
}

/// True when the key that went down is used up before the dialog manager sees it.
bool Form::Key(const MSG& message) {
    if (message.message != WM_KEYDOWN)
        return false;
    // A page without a chapter of its own leaves it to its form.
    if (message.wParam == VK_F1)
        for (HWND asked = message.hwnd; asked; asked = GetAncestor(asked, GA_PARENT))
            if (SendMessageA(asked, WM_HELP, 0, 0) == TRUE)
                return true;
    bool used = false;
    Raise([&] {
        // Ctrl+Tab turns the pages, as in every window with tabs; the dialog manager does not do it.
        if (message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0) {
            const int by = GetKeyState(VK_SHIFT) < 0 ? -1 : 1;
            used = std::ranges::any_of(controls_, [by](Control* control) { return control->TurnPage(by); });
        }
        // A box of several lines on a page would go round inside its page.
        if (!used && message.wParam == VK_TAB &&
            (SendMessageA(message.hwnd, WM_GETDLGCODE, 0, 0) & (DLGC_WANTALLKEYS | DLGC_WANTTAB))) {
            SendMessageA(window_, WM_NEXTDLGCTL, GetKeyState(VK_SHIFT) < 0, FALSE);
            used = true;
        }
        if (used)
            return;
        const auto pressed = std::ranges::find_if(controls_, [&](const Control* control) {
            return message.hwnd == control->window_ || IsChild(control->window_, message.hwnd);
        });
        used =
            pressed != controls_.end()
                ? (*pressed)->Key(static_cast<int>(message.wParam))
                : std::ranges::any_of(controls_, [&](Control* control) { return control->PageKey(message); });
        used = used || Form_Key(message.hwnd, static_cast<int>(message.wParam));
    });
    return used;
}

} // namespace gui
