#pragma once

#include "gui/Control.h"

namespace gui {

class TabPage;

/// Tabs over pages. Its pages are members of the same form, declared behind it, in the order of the tabs.
class TabPanel : public Control {
public:
    template <class F, class C = F>
    TabPanel(F& form, int id, void (C::*click)() = nullptr) : Control(form, id), click_(Bind(form, click)) {}

    /// The page in front, counted from 0.
    int Tab() const;
    /// Brings a page to the front and runs the Click handler.
    void Tab(int index);
    int Tabs() const { return static_cast<int>(pages_.size()); }
    /// A star behind the caption of a page's tab.
    void Mark(const Form& page, bool marked);

private:
    friend class TabPage;
    void Attached() override;
    void LoadInside() override;
    bool TurnPage(int by) override;
    bool PageKey(const MSG& message) override;
    bool Notify(const NMHDR& header, LRESULT& result) override;
    void ShowPage();

    std::vector<TabPage*> pages_;
    std::function<void()> click_;
};

/// A page of a TabPanel: a form of its own inside the panel's form. The caption of its template is the tab's.
class TabPage : public Form {
public:
    TabPage(TabPanel& panel, int templateId) : Form(templateId, panel.Parent()), panel_(panel) {
        panel.pages_.push_back(this);
    }
    TabPanel& Panel() const { return panel_; }

private:
    friend class TabPanel;
    void Make() { MakeWindow(panel_.Parent().Window()); }
    void LoadPage() { Form_Load(); }

    TabPanel& panel_;
};

} // namespace gui
