#pragma once

#define IDD_frmWaiting 2900
#define IDC_frmWaiting_lblWhat 2901
#define IDC_frmWaiting_lblTime 2902
#define IDC_frmWaiting_cmdCancel 2903
