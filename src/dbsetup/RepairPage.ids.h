#pragma once

#define IDD_RepairPage 2150
#define IDC_RepairPage_cmdRepairDatabase 2151
#define IDC_RepairPage_cmdDeleteDatabase 2152
