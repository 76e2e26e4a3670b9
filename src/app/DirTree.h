#pragma once

#include "common/Text.h"
#include "gui/Control.h"

#include <commctrl.h>

#include <string>

/// The folders of one drive as a tree. The selected folder is the path; folders below a folder are looked up
/// when it is opened. They have the names that the system has for them, which may be more than 8-bit text
/// holds.
class DirTree : public gui::Control {
public:
    /// `change`: another folder was selected.
    template <class F, class C = F>
    DirTree(F& form, int id, void (C::*change)()) : Control(form, id), change_(Bind(form, change)) {}

    /// Folders that hold this file are shown in bold from now on.
    void Wanted(const std::string& file) { wanted_ = common::ToWide(file); }

    /// Full path of the selected folder; only a drive's root ends in a backslash. "" for none. Raises 75 with
    /// the reason for a folder whose path the tool cannot use (common::NarrowFolder).
    std::string Path() const;
    /// Shows the tree of the path's drive with the folder selected. Raises 68 when the drive is not ready or
    /// not there, another file error when the folder is not there or may not be read; the tree is then as it
    /// was.
    void Path(const std::string& path);

private:
    bool Notify(const NMHDR& header, LRESULT& result) override;
    HTREEITEM Add(HTREEITEM parent, const std::wstring& name);
    HTREEITEM Child(HTREEITEM parent, const std::wstring& name) const;
    std::wstring TextOf(HTREEITEM item) const;
    std::wstring PathOf(HTREEITEM item) const;
    /// Looks the folder's own folders up, once.
    void Fill(HTREEITEM item);

    std::function<void()> change_;
    std::wstring wanted_;
};
