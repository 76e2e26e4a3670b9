#pragma once

#define IDD_IntroductionPage 2110
