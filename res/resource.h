// Identifiers of the program's resources, for the resource script and the sources.
#pragma once

#define IDR_MAINFRAME 128
#define IDD_ABOUTBOX 100
#define IDS_ABOUTBOX 101
#define IDD_QUILLET_DIALOG 102

// The About entry of the wait dialog's system menu. Its low four bits are clear, as the platform
// wants it for application-defined system commands.
#define IDM_ABOUTBOX 0x0010
