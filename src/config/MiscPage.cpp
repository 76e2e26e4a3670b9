#include "config/MiscPage.h"

MiscPage::MiscPage(gui::TabPanel& panel) : TabPage(panel, IDD_MiscPage) {}
