#pragma once

#include <string>
#include <string_view>

/// Wide text: conversion, character classes, comparing without case, reading numbers.
///
/// A wide character is one Unicode code point. All of it is independent of the process's locale.
namespace platform {

/// Decodes UTF-8. A byte that is no part of well-formed UTF-8 becomes the lone code U+DC00 + byte,
/// so that toBytes() can give it back.
std::wstring fromUtf8(std::string_view bytes);

/// Encodes as well-formed UTF-8; what is no Unicode character becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

/// Encodes as UTF-8 and gives back the malformed bytes that fromUtf8() kept: its exact reverse.
std::string toBytes(std::wstring_view text);

/// Decodes UTF-16; a surrogate without its partner is kept as it is.
std::wstring fromUtf16(std::u16string_view units);

/// Encodes as UTF-16; what lies beyond Unicode becomes U+FFFD.
std::u16string toUtf16(std::wstring_view text);

/// White space as Windows classes it, the no-break and the ideographic space included.
bool isSpace(wchar_t character);

std::wstring_view trimmedLeft(std::wstring_view text);
std::wstring_view trimmedRight(std::wstring_view text);

/// One-to-one upper and lower case of a character.
wchar_t toUpper(wchar_t character);
wchar_t toLower(wchar_t character);

/// The form of a character that all its cases share.
wchar_t foldCase(wchar_t character);

/// Compares without case. @return negative, zero or positive, as `left` stands to `right`
int compareNoCase(std::wstring_view left, std::wstring_view right);

/// The number that a text begins with, after white space: what follows it is not looked at.
/// @return 0 when there is none
double readNumber(std::wstring_view text);

} // namespace platform
