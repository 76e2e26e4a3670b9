#pragma once

#define IDD_frmMySQLSetUp 2100
#define IDC_frmMySQLSetUp_mstMySQL 2101
#define IDC_frmMySQLSetUp_cmdPrevious 2102
#define IDC_frmMySQLSetUp_cmdNext 2103
#define IDC_frmMySQLSetUp_cmdClose 2104
