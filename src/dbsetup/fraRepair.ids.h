#pragma once

#define IDD_fraRepair 2150
#define IDC_fraRepair_cmdRepairDatabase 2151
#define IDC_fraRepair_cmdDeleteDatabase 2152
#define IDC_fraRepair_lblLosses 2153
