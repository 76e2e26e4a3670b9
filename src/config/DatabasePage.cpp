#include "config/DatabasePage.h"

DatabasePage::DatabasePage(gui::TabPanel& panel) : TabPage(panel, IDD_DatabasePage) {}
