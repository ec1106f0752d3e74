// The seven character functions of ICU that the engine calls, by means of the platform.
#pragma once

#include <windows.h>

#include <cwctype>

// Both take a character in the place of a string when its upper half is zero. Beyond 16 bits there is no
// answer, and the character is its own counterpart.
inline int u_tolower(int character) {
  if (character < 0 || character > 0xFFFF) return character;
  return static_cast<int>(
      reinterpret_cast<ULONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(character)))));
}
inline int u_toupper(int character) {
  if (character < 0 || character > 0xFFFF) return character;
  return static_cast<int>(
      reinterpret_cast<ULONG_PTR>(CharUpperW(reinterpret_cast<LPWSTR>(static_cast<ULONG_PTR>(character)))));
}

inline bool u_islower(int character) { return std::iswlower(static_cast<std::wint_t>(character)) != 0; }
inline bool u_isupper(int character) { return std::iswupper(static_cast<std::wint_t>(character)) != 0; }
inline bool u_isalpha(int character) { return std::iswalpha(static_cast<std::wint_t>(character)) != 0; }
inline bool u_isalnum(int character) { return std::iswalnum(static_cast<std::wint_t>(character)) != 0; }
inline bool u_isspace(int character) { return std::iswspace(static_cast<std::wint_t>(character)) != 0; }
