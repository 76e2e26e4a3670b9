#define IDD_frmFindAccount 2500

#define IDC_frmFindAccount_txtAccountName 2501
#define IDC_frmFindAccount_cmdNext 2502
#define IDC_frmFindAccount_cmdClose 2503
