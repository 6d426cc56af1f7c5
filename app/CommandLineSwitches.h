#pragma once

class CommandLine;
struct SendRequest;

/// Whether the line asks for the help text, which wins over everything else.
bool AsksForHelp(const CommandLine& commandLine);

/// Fills `request` from the line's switches. No switch can fail: unknown ones are ignored, a number
/// that cannot be read leaves its field as it was, and a value without closing quote takes the rest
/// of the line.
void ReadSwitches(const CommandLine& commandLine, SendRequest& request);
