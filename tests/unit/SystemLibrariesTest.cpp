// From the construction of the application object on, libraries that are asked for by their names
// come from the system's folder only, not from the program's own, where somebody may have planted
// one. Each try is a process of its own, for which the choice is made once.
#include "app/QuilletApp.h"
#include "tests/support/PlantedLibrary.h"
#include "tests/unit/DeathTest.h"

#include <cstdlib>

namespace
{

constexpr int kGotNone = 42;

/// Asks for the library that lies beside this program and ends the process that loads it.
[[noreturn]] void AskForTheLibraryBesideThis()
{
    std::_Exit(::LoadLibraryW(L"planted_library.dll") == nullptr ? kGotNone : 0);
}

using SystemLibrariesDeathTest = DeathTest;

TEST_F(SystemLibrariesDeathTest, AreTheOnlyOnesThatTheProgramGets)
{
    EXPECT_EXIT(
        {
            const CQuilletApp app;
            AskForTheLibraryBesideThis();
        },
        testing::ExitedWithCode(kGotNone), "");
}

// The counterpart, without which the test above would show nothing.
TEST_F(SystemLibrariesDeathTest, AreNotTheOnlyOnesWithoutIt)
{
    EXPECT_EXIT(AskForTheLibraryBesideThis(), testing::ExitedWithCode(kLoadedPlantedLibrary), "");
}

} // namespace
