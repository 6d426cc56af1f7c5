// Identifiers of the unit tests' own resources.
#pragma once

#define IDS_TEST 501
#define IDD_TEST 502
#define IDC_TEXT 503
#define IDC_OTHER 504
#define IDD_PLACED 505
#define IDD_SHOWN 506
#define IDD_CLASSIC 507
#define IDD_CLASSIC_PLACED 508
