// Identifiers of the unit tests' own resources.
#pragma once

#define IDS_TEST 501
#define IDD_TEST 502
#define IDC_TEXT 503
#define IDC_OTHER 504
