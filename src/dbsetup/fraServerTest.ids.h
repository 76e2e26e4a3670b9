#pragma once

#define IDD_fraServerTest 2120
#define IDC_fraServerTest_cmdTestMySQL 2121
#define IDC_fraServerTest_fraConnectionTest 2122
#define IDC_fraServerTest_lblConnectionTest 2123
#define IDC_fraServerTest_lblRunningMySQL 2124
