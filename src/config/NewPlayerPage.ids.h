#pragma once

#define IDD_NewPlayerPage 1580
#define IDC_NewPlayerPage_txtMapName 1581
#define IDC_NewPlayerPage_txtStartingX 1582
#define IDC_NewPlayerPage_txtStartingY 1583
#define IDC_NewPlayerPage_txtStartingZeny 1584
#define IDC_NewPlayerPage_cmdMapPicker 1585
