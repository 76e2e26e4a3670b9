#pragma once

#define IDD_SamplePage 9030
#define IDC_SamplePage_txtFirst 9031
#define IDC_SamplePage_cmdSecond 9032
