#include "gui/Form.h"
#include "gui/MsgBox.h"

#include <algorithm>

namespace gui {

Form& Form::Top() {
    Form* top = this;
    while (top->parent_)
        top = top->parent_;
    return *top;
}

void Form::Occupy(int pieces) {
    for (Form* each = this; each; each = each->parent_)
        each->busy_ += pieces;
}

void Form::Start(Task<> task, std::function<void()> over) {
    tasks_.Start(std::move(task), [this, over = std::move(over)](std::exception_ptr error) {
        if (over)
            over();
        if (error)
            Raise([&] { std::rethrow_exception(error); });
    });
}

void Form::Refuse() {
    Tell("This is still under way. Please wait until it is done.");
}

// ---- Modal windows

Task<> Form::ShowModal(Form& owner) {
    Load(&owner, true);
    if (!Loaded())
        co_return;
    disabledOwner_.emplace(owner.Window());
    ShowWindow(window_, SW_SHOW);
    // At the first start there is no window of ours yet from which it would come to the front by itself.
    if (!owner.Visible())
        BringToFront();
    co_await gone_->Happened();
}

// ---- Unloading

void Form::Unload() {
    if (!Loaded() || unloading_)
        return;
    if (loading_)
        Discard();
    else
        Start(UnloadWhenAllowed());
}

Task<bool> Form::Form_QueryUnload() {
    co_return true;
}

Task<> Form::UnloadWhenAllowed() {
    // However it ends; a window that goes by itself ends it where it waits.
    const struct Unloading {
        explicit Unloading(bool& flag) : unloading(flag) { unloading = true; }
        ~Unloading() { unloading = false; }
        bool& unloading;
    } unloading(unloading_);
    const bool allowed = co_await Form_QueryUnload();
    if (!allowed)
        co_return;
    Raise([this] { Form_Unload(); });
    Discard();
}

// ---- Message boxes

Task<int> Form::MsgBox(std::string text, unsigned style, std::string title) {
    if (title.empty())
        title = Top().Caption();
    const int button = co_await gui::MsgBox(std::move(text), style, std::move(title), Top().window_);
    co_return button;
}

Task<bool> Form::MayEnd(std::string question) {
    if (question.empty())
        co_return true;
    const int answer = co_await MsgBox(std::move(question), MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2);
    co_return answer == IDYES;
}

void Form::Tell(const std::string& text, unsigned style, const std::string& title) {
    const Box box{text, style, title.empty() ? Top().Caption() : title};
    // A window that is just loading may not come to be.
    if (!Loaded() || Top().loading_)
        return gui::Tell(box.text, box.style, box.title);
    if (std::ranges::find(told_, box) != told_.end())
        return;
    told_.push_back(box);
    if (told_.size() == 1)
        tasks_.Start(TellQueued());
}

Task<> Form::TellQueued() {
    while (!told_.empty()) {
        co_await gui::MsgBox(told_.front().text, told_.front().style, told_.front().title, Top().window_);
        told_.pop_front();
    }
}

} // namespace gui
