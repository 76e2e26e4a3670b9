#include "gui/Form.h"

#include "common/SystemLibraries.h"
#include "gui/Accessible.h"
#include "gui/Control.h"
#include "gui/Menu.h"
#include "gui/MsgBox.h"
#include "gui/Placement.h"
#include "gui/Scrolling.h"
#include "gui/Timer.h"
#include "gui/ToolTips.h"
#include "gui/WindowText.h"

#include <commctrl.h>
#include <cxxabi.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>
#include <typeinfo>

namespace gui {

namespace {

constexpr int kApplicationIcon = 1;

std::string TypeName(const std::type_info& type) {
    int status = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return name ? name.get() : type.name();
}

/// The program's icon as drawn for SM_CXICON or SM_CXSMICON, which grow with the screen's resolution. Lives
/// to the end of the program.
HICON IconOfSize(int metric) {
    static std::map<int, HICON> icons;
    HICON& icon = icons[metric];
    const int size = GetSystemMetrics(metric);
    if (!icon)
        icon = static_cast<HICON>(LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(kApplicationIcon),
                                             IMAGE_ICON, size, size, 0));
    return icon ? icon : LoadIconA(nullptr, IDI_APPLICATION);
}

/// Loads the window classes that dialog templates name, once; they stay to the end of the program.
void LoadControlClasses() {
    static const bool loaded = [] {
        const INITCOMMONCONTROLSEX classes{sizeof classes, ICC_STANDARD_CLASSES | ICC_TAB_CLASSES |
                                                               ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES};
        InitCommonControlsEx(&classes);
        // The rich-text box.
        return common::LoadSystemLibrary("riched20.dll") != nullptr;
    }();
    static_cast<void>(loaded);
}

} // namespace

std::vector<Form*>& Form::LoadedForms() {
    static std::vector<Form*> forms;
    return forms;
}

Form::Form(int templateId) : templateId_(templateId) {}

Form::Form(int templateId, Form& parent) : templateId_(templateId), parent_(&parent) {}

Form::~Form() {
    // Whoever destroys the form knows that it is gone.
    Unloaded = nullptr;
    Discard();
}

// ---- Life

void Form::Load(Form* over, bool owned) {
    if (Loaded())
        return;
    MakeWindow(owned && over ? over->Window() : nullptr);
    PlaceWindow(window_, over ? over->Window() : nullptr);
    // Above a window that is not seen, it would have no button in the task bar either, and be lost behind
    // others.
    if (owned && over && !over->Visible())
        SetWindowLongPtrA(window_, GWL_EXSTYLE, GetWindowLongPtrA(window_, GWL_EXSTYLE) | WS_EX_APPWINDOW);
    bool complete = false;
    loading_ = true;
    Raise([&] {
        for (Control* control : controls_)
            control->LoadInside();
        Form_Load();
        complete = true;
    });
    loading_ = false;
    // Half-loaded settings must never be written back, so there is no Form_Unload here.
    if (!complete)
        return Discard();
    const RECT work = WorkAreaAround(window_);
    smallest_.y = std::min(smallest_.y, work.bottom - work.top);
    FitHeight(window_);
}

void Form::MakeWindow(HWND owner) {
    LoadControlClasses();
    const HINSTANCE module = GetModuleHandleA(nullptr);
    gone_ = std::make_unique<Event>();
    const HWND window = CreateDialogParamA(module, MAKEINTRESOURCEA(templateId_), owner, Procedure,
                                           reinterpret_cast<LPARAM>(this));
    if (attachError_) {
        Discard();
        std::rethrow_exception(std::exchange(attachError_, nullptr));
    }
    if (!window)
        throw RuntimeError(common::kObjectNotSet,
                           TypeName(typeid(*this)) + ": its template could not be loaded");
}

void Form::Attach() {
    RECT size;
    GetWindowRect(window_, &size);
    smallest_ = {size.right - size.left, size.bottom - size.top};
    for (Control* control : controls_) {
        control->window_ = GetDlgItem(window_, control->id_);
        if (!control->window_)
            throw RuntimeError(common::kObjectNotSet, TypeName(typeid(*this)) + ": its template lacks the " +
                                                          TypeName(typeid(*control)) + " " +
                                                          std::to_string(control->id_));
        control->Attached();
    }
    std::vector<HWND> windows;
    for (const Control* control : controls_)
        windows.push_back(control->window_);
    AddToolTips(window_, windows);
    const auto names = AccessibleNamesOf(window_, windows);
    for (std::size_t i = 0; i < windows.size(); ++i)
        SetAccessibleName(windows[i], names[i]);
    for (PopupMenu* menu : popupMenus_)
        menu->Attach();
    for (Timer* timer : timers_)
        timer->Apply();
    if (!parent_) {
        LoadedForms().push_back(this);
        SendMessageA(window_, WM_SETICON, ICON_BIG, reinterpret_cast<LPARAM>(IconOfSize(SM_CXICON)));
        SendMessageA(window_, WM_SETICON, ICON_SMALL, reinterpret_cast<LPARAM>(Icon()));
    }
}

void Form::Show(Form* over) {
    Load(over);
    if (!Loaded() || loading_)
        return;
    ShowWindow(window_, IsIconic(window_) ? SW_RESTORE : SW_SHOW);
    BringToFront();
}

void Form::Discard() {
    if (!window_)
        return;
    Raise([this] { Form_Going(); });
    // Before the window goes, or the system would activate some other program's window.
    disabledOwner_.reset();
    DestroyWindow(window_);
}

void Form::Forget() {
    ForgetToolTips(window_);
    window_ = nullptr;
    std::erase(LoadedForms(), this);
    for (Control* control : controls_)
        control->window_ = control->mark_ = nullptr;
    for (PopupMenu* menu : popupMenus_)
        menu->Detach();
    disabledOwner_.reset();
    tasks_.Cancel();
    told_.clear();
    gone_->Set();
    if (Unloaded)
        Unloaded();
}

// ---- Properties

HICON Form::Icon() const {
    return IconOfSize(SM_CXSMICON);
}

std::string Form::Caption() const {
    return TextOf(window_);
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
    // While a box or a modal form is open over it, that one has the keyboard.
    const HWND front = IsWindowEnabled(window_) ? window_ : GetLastActivePopup(window_);
    SetForegroundWindow(front);
    BringWindowToTop(front);
}

} // namespace gui
