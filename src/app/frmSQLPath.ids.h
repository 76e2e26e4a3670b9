#pragma once

#define IDD_frmSQLPath 1300
#define IDC_frmSQLPath_drvCharacter 1301
#define IDC_frmSQLPath_dirCharacter 1302
#define IDC_frmSQLPath_cmdOK 1303
#define IDC_frmSQLPath_cmdCancel 1304
#define IDC_frmSQLPath_lblHolds 1305
