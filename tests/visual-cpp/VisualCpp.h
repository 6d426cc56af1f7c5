// Read before each source by clang in Visual C++ mode: words of g++'s are told, and libc++ finds
// what Wine's headers lack.
#pragma once
#pragma GCC system_header

#include <locale.h>
#include <stdlib.h>

#define MB_CUR_MAX 2
extern "C" {
int _islower_l(int, _locale_t);
int _isupper_l(int, _locale_t);
float _strtof_l(const char*, char**, _locale_t);
double _strtod_l(const char*, char**, _locale_t);
}
inline bool isnan(double number)
{
    return number != number;
}
inline bool isinf(double number)
{
    return number - number != 0;
}
/// Wine's header defines it; clang knows it already.
#define _InterlockedCompareExchange128 ExchangeOf128Bits

#define NOT_OF_VISUAL_CPP
#pragma clang deprecated(NOT_OF_VISUAL_CPP, "Visual C++ does not know the word that follows")
#define __attribute__ NOT_OF_VISUAL_CPP __attribute__
#define __builtin_expect NOT_OF_VISUAL_CPP __builtin_expect
#define __builtin_unreachable NOT_OF_VISUAL_CPP __builtin_unreachable
#define __int128 NOT_OF_VISUAL_CPP __int128
#define gnu NOT_OF_VISUAL_CPP gnu
