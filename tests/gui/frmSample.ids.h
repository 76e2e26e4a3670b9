#pragma once

#define IDD_frmSample 9000
#define IDC_frmSample_cmdPress 9001
#define IDC_frmSample_chkFlag 9002
#define IDC_frmSample_optFirst 9003
#define IDC_frmSample_optSecond 9004
#define IDC_frmSample_optOther 9005
#define IDC_frmSample_txtText 9006
#define IDC_frmSample_lstNames 9007
#define IDC_frmSample_cboNames 9008
#define IDC_frmSample_picMap 9010
#define IDC_frmSample_fraBox 9011
#define IDC_frmSample_shpMark 9012
#define IDC_frmSample_stcPlug 9013
#define IDC_frmSample_tabPages 9014
#define IDC_frmSample_txtLog 9015
#define IDR_frmSample_bar 9020
#define IDM_frmSample_mnuInBar 9022
