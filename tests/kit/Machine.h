#pragma once

#include <string>

/// What the platform says of this machine, as far as it decides how the tests end: lines of the
/// report, in UTF-8.
std::string DescribeMachine();
