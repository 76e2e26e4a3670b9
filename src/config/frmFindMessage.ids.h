#pragma once

#define IDD_frmFindMessage 1470

#define IDC_frmFindMessage_txtSought 1471
#define IDC_frmFindMessage_cmdNext 1472
#define IDC_frmFindMessage_cmdClose 1473
#define IDC_frmFindMessage_lblResult 1474
