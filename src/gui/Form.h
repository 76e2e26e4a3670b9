#pragma once

#include "common/RuntimeError.h"
#include "gui/Application.h"

#include <windows.h>

#include <functional>
#include <memory>
#include <string>
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

/// A member function of a form, bound to the form: what every event calls. Empty when there is no member.
template <class F, class C, class... A> std::function<void(A...)> Bind(F& form, void (C::*handler)(A...)) {
    if (!handler)
        return {};
    return [&form, handler](A... arguments) { (form.*handler)(std::forward<A>(arguments)...); };
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
    /// unloaded.
    void Load(Form* over = nullptr, bool owned = false);
    /// Loads if needed, shows and activates the window, and returns at once.
    void Show(Form* over = nullptr);
    /// Loads if needed, shows the window above `owner`, which is disabled meanwhile, and returns when the
    /// form has been unloaded.
    void ShowModal(Form& owner);
    /// Runs Form_Unload and destroys the window. The object stays until its owner releases it.
    void Unload();
    bool Loaded() const { return window_ != nullptr; }
    /// Called once the window is gone; the owner's moment to release the object (see FormSlot).
    std::function<void()> Unloaded;

    HWND Window() const { return window_; }
    HICON Icon() const;
    std::string Caption() const;
    void Caption(const std::string& caption);
    bool Visible() const;
    void Visible(bool visible);
    WindowState State() const;
    void State(WindowState state);
    /// In front of the other windows, with the keyboard focus.
    void BringToFront();

    /// A message box of this form, titled with its caption unless `title` says otherwise; returns the id of
    /// the button. `style` takes the platform's MB_ values.
    int MsgBox(const std::string& text, unsigned style = MB_OK, const std::string& title = {});

    /// Runs an event handler of this form. The boundary at which its errors stop: a RuntimeError goes to
    /// Form_Error, and Leaving ends the handler only, because every loop around it sees the same.
    void Raise(const std::function<void()>& handler);
    /// True while a handler of this form or of a page on it is on the stack.
    bool Busy() const { return busy_ > 0; }

    /// Keyboard handling of whichever form the message belongs to; true when the message is used up.
    static bool TranslateKey(MSG& message);

protected:
    virtual void Form_Load() {}
    virtual void Form_Unload() {}
    virtual void Form_Resize() {}
    /// A press on the form's own surface; x and y in pixels.
    virtual void Form_MouseDown(MouseButton /*button*/, int /*x*/, int /*y*/) {}
    /// The task bar was made anew (its program had crashed), so its tray icons are gone.
    virtual void Form_TaskbarCreated() {}
    /// An error that no handler of this form caught. Shows it in a message box.
    virtual void Form_Error(const RuntimeError& error);
    /// The button that Esc presses.
    virtual CommandButton* CancelButton() { return nullptr; }

    /// A form inside another one: a tab page.
    Form(int templateId, Form& parent) : templateId_(templateId), parent_(&parent) {}

private:
    friend class Control;
    friend class MenuItem;
    friend class PopupMenu;
    friend class TabPanel;
    friend class Timer;

    static INT_PTR CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    bool Handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result);
    void MakeWindow(HWND owner);
    void LoadPages();
    void Attach();
    void AttachToolTips();
    void Destroy();
    void Forget();
    void PlaceOver(const Form* over);
    void Command(int id, int code, bool fromMenu);
    void MouseDown(MouseButton button, int x, int y);
    Control* ControlOf(HWND window) const;
    Control* ControlOf(int id) const;

    int templateId_;
    Form* parent_ = nullptr;
    HWND window_ = nullptr;
    HWND toolTips_ = nullptr;
    HWND disabledOwner_ = nullptr;
    POINT smallest_{};
    bool unloading_ = false;
    int busy_ = 0;
    std::exception_ptr attachError_;
    std::vector<Control*> controls_;
    std::vector<Timer*> timers_;
    std::vector<MenuItem*> menuItems_;
    std::vector<PopupMenu*> popupMenus_;
};

/// Keeps a form until none of its handlers is on the stack, then deletes it.
void Retire(std::unique_ptr<Form> form);
/// Deletes the retired forms that can go; the message loop calls it between messages.
void ReleaseRetired();

/// Holds a modeless form: makes it when it is asked for, and lets it go once it has been unloaded.
template <class F> class FormSlot {
public:
    explicit FormSlot(std::function<std::unique_ptr<F>()> make = [] { return std::make_unique<F>(); })
        : make_(std::move(make)) {}
    FormSlot(const FormSlot&) = delete;
    FormSlot& operator=(const FormSlot&) = delete;

    /// The form, made when there is none; not loaded yet then.
    F& Get() {
        if (!form_) {
            form_ = make_();
            form_->Unloaded = [this] { Retire(std::move(form_)); };
        }
        return *form_;
    }
    /// The form if it is there.
    F* Peek() { return form_.get(); }

private:
    std::function<std::unique_ptr<F>()> make_;
    std::unique_ptr<F> form_;
};

} // namespace gui
