#pragma once

#include "tests/support/ForegroundLock.h"

#include <gtest/gtest.h>

/// A fixture of tests that need the foreground: they are skipped where nobody may take it.
template <typename Fixture = testing::Test>
class InFront : public Fixture
{
protected:
    void SetUp() override
    {
        if (!ForegroundIsFree())
        {
            GTEST_SKIP() << "no program may take the foreground: the lock's timeout stays at "
                         << ForegroundLockTimeout() << " ms";
        }
        Fixture::SetUp();
    }
};
