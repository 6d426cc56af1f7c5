// The entry point of the test programs. GoogleTest's own main() does not fit programs that are
// linked for a wide-character entry point, and the framework's must not be taken by accident.
#include <windows.h>

#include "tests/support/KillOnCloseJob.h"

#include <gtest/gtest.h>

#include <cstdio>

int wmain(int argc, wchar_t** argv)
{
    // What a test has started ends with it, also when it is killed for its time-out: the job's only
    // handle is closed by the end of this process.
    if (!::AssignProcessToJobObject(MakeKillOnCloseJob(), ::GetCurrentProcess()))
    {
        std::fprintf(stderr, "What tests start may outlive them: error %lu\n", ::GetLastError());
    }
    // As the program under test is: on a scaled screen, both see the same coordinates.
    ::SetProcessDPIAware();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
