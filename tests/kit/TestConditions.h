#pragma once

#include "tests/support/ForegroundLock.h"

/// Makes the user's session as the tests need it, until this process ends or the user breaks it
/// off; then it is as it was. Nothing of it is ever written to the user's profile.
///
/// - No program that brings a window to the foreground is refused: the tests bring their own there.
///   Where the lock stays, its timeout is not 0 after this.
/// - The console has the code page that consoles begin with: batch files are read in it.
/// - Neither the machine nor its screen goes to sleep, which would lock the screen.
const ForegroundLock& SetTestConditions();
