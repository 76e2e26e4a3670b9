#pragma once

#include "common/RuntimeError.h"
#include "gui/Application.h"
#include "gui/Modality.h"
#include "gui/TaskWaits.h"

#include <windows.h>

#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace gui {

class CommandButton;
class Control;
class MenuItem;
class PopupMenu;
class TabPanel;
class Timer;

enum class MouseButton { Left, Right, Middle };
enum class WindowState { Normal, Minimized, Maximized };

/// A member function of a form, bound to the form: what every event calls. Empty when there is no member. A
/// handler that is a task is started as one of the form's, and refuses a second event until it is over.
template <class F, class R, class C, class... A>
std::function<void(A...)> Bind(F& form, R (C::*handler)(A...)) {
    if (!handler)
        return {};
    if constexpr (std::is_void_v<R>) {
        return [&form, handler](A... arguments) { (form.*handler)(std::forward<A>(arguments)...); };
    } else {
        return [&form, handler, running = std::make_shared<bool>(false)](A... arguments) {
            if (*running)
                return form.Refuse();
            *running = true;
            form.Start((form.*handler)(std::forward<A>(arguments)...), [running] { *running = false; });
        };
    }
}

/// A window made from a dialog template. A class derived from it declares its controls, timers and menu
/// entries as members; each registers itself here and is attached to its window when the form loads.
///
/// A string resource with a control's id is that control's tooltip. A template with a sizing border gives the
/// smallest size that the user can give the form.
class Form {
public:
    explicit Form(int templateId);
    virtual ~Form();
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    /// Makes the window, hidden, and runs Form_Load; nothing when it is loaded already. `over` is the form
    /// that it is centred on and, when `owned`, stays above. Raises 91 naming form and control when the
    /// template lacks a declared control. An error in Form_Load goes to Form_Error and leaves the form
    /// unloaded; while Form_Load runs, the form can neither be shown nor does unloading it run Form_Unload.
    void Load(Form* over = nullptr, bool owned = false);
    /// Loads if needed, shows and activates the window, and returns at once.
    void Show(Form* over = nullptr);
    /// Loads if needed and shows the window above `owner`, which is disabled meanwhile. Over when the form
    /// has been unloaded.
    Task<> ShowModal(Form& owner);
    /// Asks Form_QueryUnload, runs Form_Unload and destroys the window. The object stays until its owner
    /// releases it.
    void Unload();
    /// Destroys the window without asking and without Form_Unload. Whoever holds a form calls it before the
    /// form's members go, because the form's tasks work with them (see FormSlot, Local).
    void Discard();
    bool Loaded() const { return window_ != nullptr; }
    /// Called once the window is gone; the owner's moment to release the object (see FormSlot).
    std::function<void()> Unloaded;

    HWND Window() const { return window_; }
    /// At the size of title bar and tray.
    HICON Icon() const;
    std::string Caption() const;
    void Caption(const std::string& caption);
    bool Visible() const;
    void Visible(bool visible);
    WindowState State() const;
    void State(WindowState state);
    /// In front of the other windows, with the keyboard focus; while a box or a modal form is open over it,
    /// that one gets both.
    void BringToFront();

    /// A message box of this form, titled with its caption unless `title` says otherwise; the result is the
    /// id of the button. `style` takes the platform's MB_ values. The form takes no input meanwhile.
    Task<int> MsgBox(std::string text, unsigned style = MB_OK, std::string title = {});
    /// Asks before something is lost, with No as the default. True for a Yes, and without a question.
    Task<bool> MayEnd(std::string question);
    /// Shows such a box and goes on; nobody awaits its answer. The boxes of a form come one after the other,
    /// and one that waits or is shown already does not come again.
    void Tell(const std::string& text, unsigned style = MB_OK, const std::string& title = {});

    /// Runs a task of this form, up to its first wait. It ends where it waits when the window goes; its
    /// errors go to Form_Error. `over` is called when it is over or was ended.
    void Start(Task<> task, std::function<void()> over = {});
    /// What a second press gets while the task of the first is not over: a word, and nothing else.
    void Refuse();

    /// Runs an event handler of this form. The boundary at which its errors stop: every std::exception goes
    /// to Form_Error, one that is no RuntimeError as error 51 with its own words (7 when memory ran out).
    void Raise(const std::function<void()>& handler);
    /// True while a handler of this form or of a page on it is on the stack.
    bool Busy() const { return busy_ > 0; }

    /// Keyboard handling of whichever form the message belongs to; true when the message is used up.
    static bool TranslateKey(MSG& message);

protected:
    virtual void Form_Load() {}
    /// May the form be unloaded? The place for a question.
    virtual Task<bool> Form_QueryUnload();
    virtual void Form_Unload() {}
    /// The window is about to go, unloaded or discarded.
    virtual void Form_Going() {}
    virtual void Form_Resize() {}
    /// A press on the form's own surface; x and y in pixels.
    virtual void Form_MouseDown(MouseButton /*button*/, int /*x*/, int /*y*/) {}
    /// Alt or F10 in a form without a menu bar; the place for a menu of the form.
    virtual void Form_MenuKey(POINT /*at*/) {}
    /// Shift+F10 or the menu key in a control that has no menu itself; `at` is its corner on the screen.
    virtual void Form_ContextMenu(HWND /*control*/, POINT /*at*/) {}
    /// A key that went down in a control which has no use for it; true uses it up. The place for shortcuts.
    virtual bool Form_Key(HWND /*control*/, int /*virtualKey*/) { return false; }
    /// The task bar was made anew (its program had crashed), so its tray icons are gone.
    virtual void Form_TaskbarCreated() {}
    /// Windows ends the session: the last moment to save, without a question.
    virtual void Form_EndSession() {}
    /// An error that no handler of this form caught. Tells it in a message box.
    virtual void Form_Error(const RuntimeError& error);
    /// The button that Esc presses.
    virtual CommandButton* CancelButton() { return nullptr; }

    /// A form inside another one: a tab page.
    Form(int templateId, Form& parent);
    /// Makes the window and attaches the controls, without Form_Load.
    void MakeWindow(HWND owner);

private:
    friend class Control;
    friend class MenuItem;
    friend class PopupMenu;
    friend class TabPanel;
    friend class Timer;

    static std::vector<Form*>& LoadedForms();
    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    void Attach();
    void Forget();
    void Report(const RuntimeError& error);
    Task<> UnloadWhenAllowed();
    Task<> TellQueued();
    void Occupy(int pieces);
    void Command(int id, int code, bool fromMenu);
    void Draw(Control& control, const DRAWITEMSTRUCT& item);
    void MouseDown(MouseButton button, int x, int y);
    bool Key(const MSG& message);
    Control* ControlOf(HWND window) const;
    Control* ControlOf(int id) const;
    Form& Top();

    int templateId_;
    Form* parent_ = nullptr;
    HWND window_ = nullptr;
    std::optional<Disabled> disabledOwner_;
    std::unique_ptr<Event> gone_; ///< happens when the present window has gone
    POINT smallest_{};
    bool loading_ = false;
    bool unloading_ = false;
    int busy_ = 0;
    std::exception_ptr attachError_;
    struct Box {
        std::string text;
        unsigned style;
        std::string title;
        bool operator==(const Box&) const = default;
    };
    std::deque<Box> told_; ///< the first one is shown
    Tasks tasks_{[this](int pieces) { Occupy(pieces); }};
    std::vector<Control*> controls_;
    std::vector<Timer*> timers_;
    std::vector<MenuItem*> menuItems_;
    std::vector<PopupMenu*> popupMenus_;
};

} // namespace gui
