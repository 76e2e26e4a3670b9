#include "config/ExperiencesPage.h"

ExperiencesPage::ExperiencesPage(gui::TabPanel& panel) : TabPage(panel, IDD_ExperiencesPage) {}
