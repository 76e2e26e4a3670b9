#pragma once

#define IDD_fraNewPlayer 1580
#define IDC_fraNewPlayer_txtMapName 1581
#define IDC_fraNewPlayer_txtStartingX 1582
#define IDC_fraNewPlayer_txtStartingY 1583
#define IDC_fraNewPlayer_txtStartingZeny 1584
#define IDC_fraNewPlayer_cmdMapPicker 1585
