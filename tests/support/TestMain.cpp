// The entry point of the test programs. GoogleTest's own main() does not fit programs that are
// linked for a wide-character entry point, and the framework's must not be taken by accident.
#include <windows.h>

#include "tests/support/Journal.h"
#include "tests/support/RandomSeed.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace
{

/// Prints, after the tests, how to repeat each one that failed: in the order of this run, when it
/// was a shuffled one, since a test can fail for what another has left.
class RepeatPrinter : public testing::EmptyTestEventListener
{
    void OnTestEnd(const testing::TestInfo& test) override
    {
        if (test.result()->Failed())
        {
            m_failed.push_back(std::string(test.test_suite_name()) + "." + test.name());
        }
    }

    void OnTestIterationEnd(const testing::UnitTest& run, int) override
    {
        for (const std::string& test : m_failed)
        {
            std::printf("To repeat %s: QUILLET_TEST_SEED=%lu ./scripts/desktop wine %s "
                        "--gtest_filter='%s'\n",
                        test.c_str(), static_cast<unsigned long>(RandomSeed()), Program().c_str(),
                        test.c_str());
        }
        randomSeed = NewRandomSeed();
        if (!m_failed.empty() && GTEST_FLAG_GET(shuffle))
        {
            std::printf("They ran in the order of --gtest_shuffle --gtest_random_seed=%d\n",
                        run.random_seed());
        }
        m_failed.clear();
    }

    /// As it is called in the repository's folder: build/PRESET/NAME.exe.
    static std::string Program()
    {
        wchar_t path[MAX_PATH];
        ::GetModuleFileNameW(nullptr, path, MAX_PATH);
        const std::filesystem::path program(path);
        return "build/" + program.parent_path().filename().string() + "/" +
               program.filename().string();
    }

    std::vector<std::string> m_failed;
};

} // namespace

int wmain(int argc, wchar_t** argv)
{
    // As the program under test is: on a scaled screen, both see the same coordinates.
    ::SetProcessDPIAware();
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::UnitTest::GetInstance()->listeners().Append(new RepeatPrinter);
    KeepJournal();
    return RUN_ALL_TESTS();
}
