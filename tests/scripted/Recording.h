// How the fakes write down that they have been called.
#pragma once

#include <windows.h>

#include "tests/scripted/ScriptedPlatform.h"

#include <cstdint>
#include <sstream>
#include <string>

/// The living one. A fake that is called without it has been called too early.
inline ScriptedPlatform& Platform()
{
    return *ScriptedPlatform::Current();
}

/// How the record shows an argument.
inline std::string Text(const std::string& text)
{
    return text;
}
inline std::string Text(HWND window)
{
    return Platform().NameOf(window);
}
inline std::string Text(std::int64_t number)
{
    return std::to_string(number);
}

inline std::string Hexadecimal(UINT number)
{
    std::ostringstream text;
    text << "0x" << std::hex << number;
    return text.str();
}

inline std::string TrueOrFalse(BOOL value)
{
    return value ? "TRUE" : "FALSE";
}

/// Records a call as "name(argument, argument, ...)".
template <typename... Arguments>
void Record(const char* name, const Arguments&... arguments)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    Platform().Record(std::string(name) + "(" + list + ")");
}
