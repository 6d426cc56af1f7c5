#pragma once

#include "tests/support/DialogProbe.h"
#include "tests/support/ForegroundLock.h"
#include "tests/support/RealInput.h"

#include <gtest/gtest.h>

/// A run that names no target, so that it only waits, with its dialog in front wherever a program
/// may be there.
class WaitingRun : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE(dialog, nullptr);
        ASSERT_TRUE(!ForegroundIsFree() || WaitForForeground(dialog));
    }

    HWND Button() const { return ::GetDlgItem(dialog, IDCANCEL); }
    void Post(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        ::PostMessageW(dialog, message, wParam, lParam);
    }

    const QuilletRun run{L""};
    const HWND dialog = run.WaitForWaitingDialog();
};
