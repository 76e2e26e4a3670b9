#pragma once

#include "frmSample.ids.h"

#include "gui/Lists.h"
#include "gui/Menu.h"
#include "gui/Picture.h"
#include "gui/Text.h"
#include "gui/Timer.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

/// A form that writes down every event, and runs what a test plugs in.
class frmSample final : public gui::Form {
public:
    frmSample() : Form(IDD_frmSample) {}

    std::vector<std::string> events;
    std::function<void()> whenPressed;
    std::function<void()> whenTicking;
    std::function<void()> whenLoading;
    long errorNumber = 0;

    gui::Frame fraBox{*this, IDC_frmSample_fraBox, &frmSample::fraBox_MouseDown};
    gui::CommandButton cmdPress{*this, IDC_frmSample_cmdPress, &frmSample::cmdPress_Click};
    gui::CheckBox chkFlag{*this, IDC_frmSample_chkFlag, &frmSample::chkFlag_Click};
    gui::OptionButton optFirst{*this, IDC_frmSample_optFirst, &frmSample::optFirst_Click};
    gui::OptionButton optSecond{*this, IDC_frmSample_optSecond, &frmSample::optSecond_Click};
    gui::OptionButton optOther{*this, IDC_frmSample_optOther};
    gui::TextBox txtText{*this, IDC_frmSample_txtText, &frmSample::txtText_Change,
                         &frmSample::txtText_KeyPress};
    gui::ListBox lstNames{*this, IDC_frmSample_lstNames, &frmSample::lstNames_Click};
    gui::ComboBox cboNames{*this, IDC_frmSample_cboNames, &frmSample::cboNames_Click};
    gui::Picture picMap{*this, IDC_frmSample_picMap, &frmSample::picMap_MouseDown};
    gui::Shape shpMark{picMap, 9};
    gui::MenuItem mnuInBar{*this, IDM_frmSample_mnuInBar, &frmSample::mnuInBar_Click};
    gui::Timer tmrTick{*this, std::chrono::milliseconds(10), &frmSample::tmrTick_Timer, false};
    gui::Timer tmrOther{*this, std::chrono::milliseconds(10), &frmSample::tmrOther_Timer, false};

    int Count(const std::string& event) const { return static_cast<int>(std::ranges::count(events, event)); }

private:
    void Note(const char* event) { events.emplace_back(event); }

    void Form_Load() override {
        Note("Load");
        if (whenLoading)
            whenLoading();
    }
    void Form_Unload() override { Note("Unload"); }
    void Form_MouseDown(gui::MouseButton, int, int) override { Note("Form_MouseDown"); }
    void Form_Error(const RuntimeError& error) override { errorNumber = error.Number(); }

    void fraBox_MouseDown(gui::MouseButton, int, int) { Note("fraBox_MouseDown"); }
    void cmdPress_Click() {
        Note("cmdPress");
        if (whenPressed)
            whenPressed();
    }
    void chkFlag_Click() { Note("chkFlag"); }
    void optFirst_Click() { Note("optFirst"); }
    void optSecond_Click() { Note("optSecond"); }
    void txtText_Change() { Note("txtText_Change"); }
    void txtText_KeyPress(int& key) {
        if (key == 'x')
            key = 0;
        else if (key == 'a')
            key = 'b';
    }
    void lstNames_Click() { Note("lstNames"); }
    void cboNames_Click() { Note("cboNames"); }
    void picMap_MouseDown(gui::MouseButton, int, int) { Note("picMap"); }
    void mnuInBar_Click() { Note("mnuInBar"); }
    void tmrTick_Timer() {
        Note("tick");
        if (whenTicking)
            whenTicking();
    }
    void tmrOther_Timer() { Note("other"); }
};
