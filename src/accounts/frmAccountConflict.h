#pragma once

#include "accounts/frmAccountConflict.ids.h"
#include "accounts/Sending.h"
#include "gui/Control.h"

/// Shows an account that somebody else has changed since it was read: each field as it was read, as the
/// server has it and as it was changed here. The operator chooses one of the last two where they differ.
class frmAccountConflict final : public gui::Form {
public:
    explicit frmAccountConflict(accounts::Conflict conflict)
        : Form(IDD_frmAccountConflict), conflict_(std::move(conflict)) {}

    gui::Label lblAccount{*this, IDC_frmAccountConflict_lblAccount};
    gui::Label lblRead1{*this, IDC_frmAccountConflict_lblRead1};
    gui::OptionButton optTheirs1{*this, IDC_frmAccountConflict_optTheirs1};
    gui::OptionButton optMine1{*this, IDC_frmAccountConflict_optMine1};
    gui::Label lblRead2{*this, IDC_frmAccountConflict_lblRead2};
    gui::OptionButton optTheirs2{*this, IDC_frmAccountConflict_optTheirs2};
    gui::OptionButton optMine2{*this, IDC_frmAccountConflict_optMine2};
    gui::Label lblRead3{*this, IDC_frmAccountConflict_lblRead3};
    gui::OptionButton optTheirs3{*this, IDC_frmAccountConflict_optTheirs3};
    gui::OptionButton optMine3{*this, IDC_frmAccountConflict_optMine3};
    gui::Label lblRead4{*this, IDC_frmAccountConflict_lblRead4};
    gui::OptionButton optTheirs4{*this, IDC_frmAccountConflict_optTheirs4};
    gui::OptionButton optMine4{*this, IDC_frmAccountConflict_optMine4};
    gui::Label lblRead5{*this, IDC_frmAccountConflict_lblRead5};
    gui::OptionButton optTheirs5{*this, IDC_frmAccountConflict_optTheirs5};
    gui::OptionButton optMine5{*this, IDC_frmAccountConflict_optMine5};
    gui::CommandButton cmdSave{*this, IDC_frmAccountConflict_cmdSave, &frmAccountConflict::cmdSave_Click};
    gui::CommandButton cmdCancel{*this, IDC_frmAccountConflict_cmdCancel,
                                 &frmAccountConflict::cmdCancel_Click};

    /// What was chosen, by accounts::Field: true is the value from here. None after Cancel.
    const std::optional<std::array<bool, accounts::kFields.size()>>& Decision() const { return decision_; }

private:
    struct Row {
        gui::Label* read;
        gui::OptionButton* theirs;
        gui::OptionButton* mine;
    };

    void Form_Load() override;
    gui::CommandButton* CancelButton() override { return &cmdCancel; }

    void cmdSave_Click();
    void cmdCancel_Click() { Unload(); }

    accounts::Conflict conflict_;
    std::optional<std::array<bool, accounts::kFields.size()>> decision_;
    const std::array<Row, accounts::kFields.size()> rows_{{{&lblRead1, &optTheirs1, &optMine1},
                                                           {&lblRead2, &optTheirs2, &optMine2},
                                                           {&lblRead3, &optTheirs3, &optMine3},
                                                           {&lblRead4, &optTheirs4, &optMine4},
                                                           {&lblRead5, &optTheirs5, &optMine5}}};
};
