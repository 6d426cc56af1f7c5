// The entry point of the test programs. GoogleTest's own main() does not fit programs that are
// linked for a wide-character entry point, and the framework's must not be taken by accident.
#include <gtest/gtest.h>

int wmain(int argc, wchar_t** argv)
{
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
