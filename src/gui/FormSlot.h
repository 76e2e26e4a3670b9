#pragma once

#include "gui/Form.h"

#include <memory>
#include <utility>

namespace gui {

/// Keeps a form until none of its handlers is on the stack, then deletes it.
void Retire(std::unique_ptr<Form> form);
/// Deletes the retired forms that can go; the message loop calls it between messages.
void ReleaseRetired();

/// Holds a form that lives in a task or on the stack; its window goes before its members do.
template <class F> class Local {
public:
    template <class... A> explicit Local(A&&... arguments) : form_(std::forward<A>(arguments)...) {}
    ~Local() { form_.Discard(); }
    Local(const Local&) = delete;
    Local& operator=(const Local&) = delete;

    F& operator*() { return form_; }
    F* operator->() { return &form_; }

private:
    F form_;
};

/// Holds a modeless form: makes it when it is asked for, and lets it go once it has been unloaded.
template <class F> class FormSlot {
public:
    explicit FormSlot(std::function<std::unique_ptr<F>()> make = [] { return std::make_unique<F>(); })
        : make_(std::move(make)) {}
    ~FormSlot() {
        if (form_) {
            form_->Unloaded = nullptr;
            form_->Discard();
        }
    }
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
