#pragma once

#include "frmSample.ids.h"
#include "SamplePage.h"

#include "gui/Lists.h"
#include "gui/Menu.h"
#include "gui/Picture.h"
#include "gui/TabPanel.h"
#include "gui/Text.h"
#include "gui/Timer.h"

#include <algorithm>
#include <functional>
#include <vector>

/// A form that writes down every event, and runs what a test plugs in.
class frmSample final : public gui::Form {
public:
    frmSample() : Form(IDD_frmSample) {}

    /// Ids of the controls that raised one, and below.
    std::vector<int> events;
    enum Event { kLoad = 1, kUnload, kMouseDown, kTick, kOther };
    std::function<void()> whenPressed = [] {}, whenTicking = [] {}, whenLoading = [] {}, whenCalled = [] {};
    long errorNumber = 0;
    int errors = 0;
    std::vector<POINT> menusAt;

    /// A control in whose own code the test plugs in.
    class Plug : public gui::Control {
    public:
        Plug(frmSample& form, int id) : Control(form, id), sample_(form) {}

    private:
        void Draw(const DRAWITEMSTRUCT&) override { sample_.whenCalled(); }
        bool Notify(const NMHDR&, LRESULT&) override {
            sample_.whenCalled();
            return true;
        }

        frmSample& sample_;
    };

    gui::Frame fraBox{*this, IDC_frmSample_fraBox, &frmSample::NoteMouse<IDC_frmSample_fraBox>};
    gui::CommandButton cmdPress{*this, IDC_frmSample_cmdPress, &frmSample::cmdPress_Click};
    gui::CheckBox chkFlag{*this, IDC_frmSample_chkFlag, &frmSample::Note<IDC_frmSample_chkFlag>};
    gui::OptionButton optFirst{*this, IDC_frmSample_optFirst, &frmSample::Note<IDC_frmSample_optFirst>};
    gui::OptionButton optSecond{*this, IDC_frmSample_optSecond, &frmSample::Note<IDC_frmSample_optSecond>};
    gui::OptionButton optOther{*this, IDC_frmSample_optOther};
    gui::TextBox txtText{*this, IDC_frmSample_txtText, &frmSample::Note<IDC_frmSample_txtText>,
                         &frmSample::txtText_KeyPress};
    gui::ListBox lstNames{*this, IDC_frmSample_lstNames, &frmSample::Note<IDC_frmSample_lstNames>};
    gui::ComboBox cboNames{*this, IDC_frmSample_cboNames, &frmSample::Note<IDC_frmSample_cboNames>};
    gui::Picture picMap{*this, IDC_frmSample_picMap, &frmSample::NoteMouse<IDC_frmSample_picMap>};
    gui::Shape shpMark{*this, IDC_frmSample_shpMark};
    Plug stcPlug{*this, IDC_frmSample_stcPlug};
    gui::TabPanel tabPages{*this, IDC_frmSample_tabPages};
    SamplePage firstPage{tabPages};
    SamplePage secondPage{tabPages};
    gui::RichTextBox txtLog{*this, IDC_frmSample_txtLog, &frmSample::Note<IDC_frmSample_txtLog>,
                            &frmSample::txtLog_ContextMenu};
    gui::MenuItem mnuInBar{*this, IDM_frmSample_mnuInBar, &frmSample::Note<IDM_frmSample_mnuInBar>};
    gui::Timer tmrTick{*this, std::chrono::milliseconds(10), &frmSample::tmrTick_Timer, false};
    gui::Timer tmrOther{*this, std::chrono::milliseconds(10), &frmSample::Note<kOther>, false};

    auto Count(int event) const { return std::ranges::count(events, event); }

private:
    template <int kEvent> void Note() { events.push_back(kEvent); }
    template <int kEvent> void NoteMouse(gui::MouseButton, int, int) { events.push_back(kEvent); }

    void Form_Load() override {
        Note<kLoad>();
        whenLoading();
    }
    void Form_Unload() override { Note<kUnload>(); }
    void Form_MouseDown(gui::MouseButton, int, int) override { Note<kMouseDown>(); }
    void Form_Error(const RuntimeError& error) override {
        errorNumber = error.Number();
        ++errors;
    }

    void cmdPress_Click() {
        Note<IDC_frmSample_cmdPress>();
        whenPressed();
    }
    void txtLog_ContextMenu(POINT at) { menusAt.push_back(at); }
    void txtText_KeyPress(int& key) { key = key == 'x' ? 0 : key; }
    void tmrTick_Timer() {
        Note<kTick>();
        whenTicking();
    }
};
