#pragma once

#define IDD_fraFinish 2180
