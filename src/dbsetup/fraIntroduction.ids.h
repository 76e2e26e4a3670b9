#pragma once

#define IDD_fraIntroduction 2110
