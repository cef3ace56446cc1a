#pragma once

#include "orvex/orvex.h"

#include <string>

/// What the commands ask for on the command line. Each returns RTNORM, or why there is no answer.

/// A text with its blanks; it may be empty.
int askText(const wchar_t* prompt, std::wstring& text);

/// A text with its blanks; RTNONE for an empty one.
int askName(const wchar_t* prompt, std::wstring& name);

/// A text without blanks; RTNONE for an empty one.
int askWord(const wchar_t* prompt, std::wstring& word);

/// A point in world coordinates; RTNONE for Enter.
int askPoint(const wchar_t* prompt, KdGePoint3d& point);

/// RTNONE for Enter.
int askNumber(const wchar_t* prompt, double& number);

/// As askNumber(), and RTERROR for a number that is not whole.
int askWholeNumber(const wchar_t* prompt, int& number);
