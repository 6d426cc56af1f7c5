#pragma once

class CommandLine;
struct SendRequest;

/// Whether the line asks for the help text, which wins over everything else.
bool AsksForHelp(const CommandLine& commandLine);

/// The settings of a run: those of the switches, each replaced by the URL's where the URL has one.
/// No setting can fail: unknown ones are ignored, a number that cannot be read leaves what stood
/// before it. Throws CInvalidArgException when decoding one of the URL's values runs past its end.
SendRequest GatherRequest(const CommandLine& commandLine);
