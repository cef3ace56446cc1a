#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#define ORVEX_WIDE_AGAIN(text) L##text
#define ORVEX_WIDE(text) ORVEX_WIDE_AGAIN(text)

namespace tests {

/// The calls that the host is asked for while `scenario` runs, in order: `kdedGetVar("CMDECHO")`.
std::vector<std::string> tracedCalls(const std::function<void()>& scenario);

/// Of traced calls those of some operations.
std::vector<std::string> only(const std::vector<std::string>& calls,
                              const std::vector<std::string_view>& operations);

/// File names of the modules that the host lists.
std::vector<std::string> loadedModules();

/// True while a file of that name is mapped into the program.
bool isMapped(std::string_view fileName);

std::string narrow(const wchar_t* text);

} // namespace tests
