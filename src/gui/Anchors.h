#pragma once

#include "gui/Control.h"

namespace gui {

/// Moves and sizes the controls of a form with a sizing border as the form grows.
class Anchors {
public:
    explicit Anchors(Form& form) : form_(form) {}
    Anchors(const Anchors&) = delete;
    Anchors& operator=(const Anchors&) = delete;

    /// How much of the form's growth each edge of a control follows: 0 stays, 1 goes all the way.
    struct Edges {
        double left, top, right, bottom;
    };

    /// From the form's Form_Load on. Edges are counted from where they are now.
    void Add(Control& control, const Edges& edges);
    /// Places the controls for the form's present size; from Form_Resize. Nothing while it is minimized.
    void Apply();

private:
    struct Anchored {
        Control* control;
        Edges edges;
        RECT start;
    };

    SIZE ClientSize() const;

    Form& form_;
    SIZE start_{};
    std::vector<Anchored> controls_;
};

} // namespace gui
