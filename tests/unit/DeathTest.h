#pragma once

#include <afxwin.h>

#include <gtest/gtest.h>

#include <array>

/// Tests that start their own program again, which GoogleTest does by a path in the ANSI code page:
/// skipped where that code page lacks a character of it, such as one of the user's name.
class DeathTest : public testing::Test
{
protected:
    void SetUp() override
    {
        std::array<char, MAX_PATH> path{};
        ::GetModuleFileNameA(nullptr, path.data(), MAX_PATH);
        if (::GetFileAttributesA(path.data()) == INVALID_FILE_ATTRIBUTES)
        {
            GTEST_SKIP() << "the path of this program is not to be said in code page "
                         << ::GetACP();
        }
    }
};
