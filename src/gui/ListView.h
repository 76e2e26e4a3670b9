#pragma once

#include "gui/Control.h"

#include <vector>

namespace gui {

/// A list with columns. Its texts are asked for when they come into sight, so that any number of rows is
/// there at once. The template gives it LVS_REPORT, LVS_OWNERDATA and LVS_SINGLESEL.
class ListView : public Control {
public:
    struct Column {
        const char* heading;
        /// Share of the list's width.
        int percent;
    };
    using TextAt = std::function<std::string(std::size_t row, std::size_t column)>;

    /// `click`: another row, or none, is selected now.
    template <class F, class C = F>
    ListView(F& form, int id, void (C::*click)() = nullptr, void (C::*dblClick)() = nullptr)
        : Control(form, id), click_(Bind(form, click)), dblClick_(Bind(form, dblClick)) {}

    /// To be called once, when the form loads.
    void Columns(const std::vector<Column>& columns);
    /// Shows so many rows anew; none is selected then. Does not run Click.
    void Fill(std::size_t rows, TextAt text);

    int ListCount() const;
    /// The selected row, counted from 0; -1 for none.
    int ListIndex() const;
    /// Selects a row (-1 for none) and brings it into sight; runs the Click handler, as choosing it does.
    void ListIndex(int index);
    std::string Text(std::size_t row, std::size_t column) const { return text_ ? text_(row, column) : ""; }

private:
    bool Notify(const NMHDR& header, LRESULT& result) override;

    std::function<void()> click_;
    std::function<void()> dblClick_;
    TextAt text_;
    bool quiet_ = false;
};

} // namespace gui
