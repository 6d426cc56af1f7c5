#pragma once

class CommandLine;
struct SendRequest;

/// Whether the line asks for the help text, which wins over everything else.
bool AsksForHelp(const CommandLine& commandLine);

/// The settings of the run: the switches', and over them, field by field, the URL's. Unknown
/// settings are ignored, and a number that cannot be read leaves its field as it was. Throws
/// CInvalidArgException when decoding a value of the URL runs past its end; nothing else can fail.
SendRequest GatherRequest(const CommandLine& commandLine);
