#define IDD_frmAccountList 2580

#define IDC_frmAccountList_txtSearch 2581
#define IDC_frmAccountList_chkGameMasters 2582
#define IDC_frmAccountList_lstAccounts 2583
#define IDC_frmAccountList_lblCount 2584
#define IDC_frmAccountList_cmdShow 2585
#define IDC_frmAccountList_cmdClose 2586
