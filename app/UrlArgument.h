#pragma once

#include <string>

class CommandLine;

/// Cuts the text of the URL switch out of the command line; empty when there is none. An unquoted
/// URL ends at the first blank, a quoted one at its closing quote; a quote directly after a "="
/// does not close it but opens a quoted value inside the URL. Without closing quote everything to
/// the end of the line is the URL.
std::wstring CutUrlArgument(const CommandLine& commandLine);
