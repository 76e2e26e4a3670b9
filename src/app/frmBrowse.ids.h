#pragma once

#define IDD_frmBrowse 1200
#define IDC_frmBrowse_drvCharacter 1201
#define IDC_frmBrowse_dirCharacter 1202
#define IDC_frmBrowse_cmdOK 1203
#define IDC_frmBrowse_cmdCancel 1204
#define IDC_frmBrowse_lblHolds 1205
