#pragma once

#define IDD_FinishPage 2180
