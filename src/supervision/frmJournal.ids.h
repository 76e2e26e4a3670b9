#pragma once

#define IDD_frmJournal 2040
#define IDC_frmJournal_txtLines 2041
#define IDC_frmJournal_cmdOpen 2042
#define IDC_frmJournal_cmdClose 2043
