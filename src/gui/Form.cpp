#include "gui/Form.h"

#include "gui/Control.h"
#include "gui/Menu.h"
#include "gui/MsgBox.h"
#include "gui/TabPanel.h"
#include "gui/Timer.h"

#include <commctrl.h>
#include <cxxabi.h>

#include <algorithm>
#include <typeinfo>
#include <utility>

namespace gui {

namespace {

constexpr long kObjectNotSet = 91;
constexpr int kApplicationIcon = 1;
constexpr std::size_t kLongestToolTip = 1024;

std::vector<Form*>& LoadedForms() {
    static std::vector<Form*> forms;
    return forms;
}

std::vector<std::unique_ptr<Form>>& RetiredForms() {
    static std::vector<std::unique_ptr<Form>> forms;
    return forms;
}

std::string TypeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return name ? name.get() : type.name();
}

/// Loads the window classes that dialog templates name, once; they stay to the end of the program.
void LoadControlClasses() {
    static const bool loaded = [] {
        const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES |
                                                               ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES};
        InitCommonControlsEx(&classes);
        // The rich-text box.
        return LoadLibraryA("riched20.dll") != nullptr;
    }();
    static_cast<void>(loaded);
}

UINT TaskbarCreatedMessage() {
    static const UINT message = RegisterWindowMessageA("TaskbarCreated");
    return message;
}

} // namespace

Form::Form(int templateId) : templateId_(templateId) {}

Form::~Form() {
    // Whoever destroys the form knows that it is gone.
    Unloaded = nullptr;
    Destroy();
}

// ---- Life

void Form::Load(Form* over, bool owned) {
    if (Loaded())
        return;
    MakeWindow(owned && over ? over->Window() : nullptr);
    PlaceOver(over);
    bool failed = false;
    Raise([&] {
        try {
            LoadPages();
            Form_Load();
        } catch (const RuntimeError& error) {
            failed = true;
            Form_Error(error);
        }
    });
    // Half-loaded settings must never be written back, so there is no Form_Unload here.
    if (failed)
        Destroy();
}

void Form::LoadPages() {
    for (Control* control : controls_)
        if (auto* panel = dynamic_cast<TabPanel*>(control))
            for (Form* page : panel->pages_)
                page->Form_Load();
}

void Form::MakeWindow(HWND owner) {
    LoadControlClasses();
    const HINSTANCE module = GetModuleHandleA(nullptr);
    const HWND window = CreateDialogParamA(module, MAKEINTRESOURCEA(templateId_), owner, Procedure,
                                           reinterpret_cast<LPARAM>(this));
    if (attachError_) {
        Destroy();
        std::rethrow_exception(std::exchange(attachError_, nullptr));
    }
    if (!window)
        throw RuntimeError(kObjectNotSet, TypeName(typeid(*this)) + ": its template could not be loaded");
}

void Form::Attach() {
    RECT size;
    GetWindowRect(window_, &size);
    smallest_ = {size.right - size.left, size.bottom - size.top};
    for (Control* control : controls_) {
        control->window_ = GetDlgItem(window_, control->id_);
        if (!control->window_)
            throw RuntimeError(kObjectNotSet, TypeName(typeid(*this)) + ": its template lacks the " +
                                                  TypeName(typeid(*control)) + " " +
                                                  std::to_string(control->id_));
        control->Attached();
    }
    AttachToolTips();
    for (PopupMenu* menu : popupMenus_)
        menu->Attach();
    for (Timer* timer : timers_)
        timer->Apply();
    if (!parent_) {
        LoadedForms().push_back(this);
        SendMessageA(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(Icon()));
        SendMessageA(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(Icon()));
    }
}

void Form::AttachToolTips() {
    for (const Control* control : controls_) {
        char text[kLongestToolTip];
        if (!LoadStringA(GetModuleHandleA(nullptr), static_cast<UINT>(control->id_), text, sizeof text))
            continue;
        if (!toolTips_)
            toolTips_ = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP,
                                        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, window_,
                                        nullptr, nullptr, nullptr);
        TTTOOLINFOA info{};
        // The size without the last member is the one that every version of the control takes.
        info.cbSize = TTTOOLINFOA_V1_SIZE;
        info.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        info.hwnd = window_;
        info.uId = reinterpret_cast<UINT_PTR>(control->window_);
        info.lpszText = text;
        SendMessageA(toolTips_, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&info));
    }
    if (toolTips_)
        SendMessageA(toolTips_, TTM_SETMAXTIPWIDTH, 0, 400);
}

void Form::PlaceOver(const Form* over) {
    RECT area;
    if (over && over->Visible())
        GetWindowRect(over->Window(), &area);
    else
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    RECT work;
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0);
    RECT own;
    GetWindowRect(window_, &own);
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    const LONG left =
        std::clamp((area.left + area.right - width) / 2, work.left, std::max(work.left, work.right - width));
    const LONG top =
        std::clamp((area.top + area.bottom - height) / 2, work.top, std::max(work.top, work.bottom - height));
    SetWindowPos(window_, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void Form::Show(Form* over) {
    Load(over);
    if (!Loaded())
        return;
    ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
    BringToFront();
}

void Form::ShowModal(Form& owner) {
    Load(&owner, true);
    if (!Loaded())
        return;
    disabledOwner_ = owner.Window();
    EnableWindow(disabledOwner_, FALSE);
    ShowWindow(window_, SW_SHOW);
    RunUntil([this] { return !Loaded(); });
}

void Form::Unload() {
    if (!Loaded() || unloading_)
        return;
    unloading_ = true;
    Raise([this] { Form_Unload(); });
    Destroy();
    unloading_ = false;
}

void Form::Destroy() {
    if (!window_)
        return;
    // Before the window goes, or the system would activate some other program's window.
    if (disabledOwner_)
        EnableWindow(std::exchange(disabledOwner_, nullptr), TRUE);
    DestroyWindow(window_);
}

void Form::Forget() {
    window_ = nullptr;
    toolTips_ = nullptr;
    std::erase(LoadedForms(), this);
    for (Control* control : controls_)
        control->window_ = nullptr;
    for (PopupMenu* menu : popupMenus_)
        menu->Detach();
    if (Unloaded)
        Unloaded();
}

void Retire(std::unique_ptr<Form> form) {
    RetiredForms().push_back(std::move(form));
}

void ReleaseRetired() {
    auto& forms = RetiredForms();
    if (!forms.empty())
        std::erase_if(forms, [](const auto& form) { return !form || !form->Busy(); });
}

// ---- Properties

HICON Form::Icon() const {
    const HICON own = LoadIconA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kApplicationIcon));
    return own ? own : LoadIconA(nullptr, IDI_APPLICATION);
}

std::string Form::Caption() const {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window_)) + 1, '\0');
    text.resize(
        static_cast<std::size_t>(GetWindowTextA(window_, text.data(), static_cast<int>(text.size()))));
    return text;
}

void Form::Caption(const std::string& caption) {
    SetWindowTextA(window_, caption.c_str());
}

bool Form::Visible() const {
    return window_ && IsWindowVisible(window_);
}
void Form::Visible(bool visible) {
    ShowWindow(window_, visible ? SW_SHOW : SW_HIDE);
}

WindowState Form::State() const {
    if (IsIconic(window_))
        return WindowState::Minimized;
    return IsZoomed(window_) ? WindowState::Maximized : WindowState::Normal;
}

void Form::State(WindowState state) {
    if (state == State())
        return;
    ShowWindow(window_, state == WindowState::Normal      ? SW_RESTORE
                        : state == WindowState::Minimized ? SW_MINIMIZE
                                                          : SW_MAXIMIZE);
}

void Form::BringToFront() {
    SetForegroundWindow(window_);
    BringWindowToTop(window_);
}

int Form::MsgBox(const std::string& text, unsigned style, const std::string& title) {
    return gui::MsgBox(text, style, title.empty() ? Caption() : title, window_);
}

// ---- Events

void Form::Raise(const std::function<void()>& handler) {
    struct OnStack {
        explicit OnStack(Form* innermost) : form(innermost) {
            for (Form* each = form; each; each = each->parent_)
                ++each->busy_;
        }
        ~OnStack() {
            for (Form* each = form; each; each = each->parent_)
                --each->busy_;
        }
        Form* form;
    } onStack(this);

    const auto report = [this](const RuntimeError& error) {
        try {
            Form_Error(error);
        } catch (const Leaving&) {
        }
    };
    // No exception may cross the system's code that called us.
    try {
        handler();
    } catch (const RuntimeError& error) {
        report(error);
    } catch (const Leaving&) {
    } catch (const std::bad_alloc&) {
        report(RuntimeError(7, "Out of memory"));
    }
}

void Form::Form_Error(const RuntimeError& error) {
    Form* top = this;
    while (top->parent_)
        top = top->parent_;
    if (top != this)
        return top->Form_Error(error);
    MsgBox("Error " + std::to_string(error.Number()) + ": " + error.Description(), MB_ICONEXCLAMATION);
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
        const auto& header = *reinterpret_cast<const NMHDR*>(lParam);
        Control* control = ControlOf(header.hwndFrom);
        return control && control->Notify(header, result);
    }
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        if (Control* control = ControlOf(item.hwndItem))
            control->Draw(item);
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
    case WM_SIZE:
        Raise([this] { Form_Resize(); });
        return true;
    case WM_GETMINMAXINFO:
        reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = smallest_;
        return true;
    case WM_CLOSE:
        Unload();
        return true;
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
    // Ctrl+Tab turns the pages, as in every window with tabs; the dialog manager does not do it.
    if (message.message == WM_KEYDOWN && message.wParam == VK_TAB && GetKeyState(VK_CONTROL) < 0)
        for (Control* control : (*found)->controls_)
            if (auto* panel = dynamic_cast<TabPanel*>(control)) {
                panel->Step(GetKeyState(VK_SHIFT) < 0 ? -1 : 1);
                return true;
            }
    if (message.message == WM_KEYDOWN)
        for (Control* control : (*found)->controls_)
            if (message.hwnd == control->window_ || IsChild(control->window_, message.hwnd))
                return control->Key(static_cast<int>(message.wParam)) || IsDialogMessageA(root, &message);
    return IsDialogMessageA(root, &message);
}

} // namespace gui
