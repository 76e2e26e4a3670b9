#pragma once

#include "gui/Control.h"

#include <commctrl.h>

#include <string>

/// The folders of one drive as a tree. The selected folder is the path; folders below a folder are looked up
/// when it is opened.
class DirTree : public gui::Control {
public:
    using Control::Control;

    /// Full path of the selected folder; only a drive's root ends in a backslash.
    std::string Path() const;
    /// Shows the tree of the path's drive with the folder selected. Raises 68 when the drive is not ready or
    /// not there, another file error when the folder is not there or may not be read; the tree is then as it
    /// was.
    void Path(const std::string& path);

private:
    bool Notify(const NMHDR& header, LRESULT& result) override;
    HTREEITEM Add(HTREEITEM parent, const std::string& name);
    HTREEITEM Child(HTREEITEM parent, const std::string& name) const;
    std::string TextOf(HTREEITEM item) const;
    std::string PathOf(HTREEITEM item) const;
    /// Looks the folder's own folders up, once.
    void Fill(HTREEITEM item);
};
