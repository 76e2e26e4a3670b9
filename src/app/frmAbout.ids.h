#pragma once

#define IDD_frmAbout 1100
#define IDC_frmAbout_lblAbout 1101
#define IDC_frmAbout_cmdOK 1102
