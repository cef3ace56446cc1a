#pragma once

#include "orvex/shell.h"

#include "support/library_test.h"

#include <functional>

namespace tests {

/// A message of the installed language about a name.
inline std::string localised(unsigned int id, const wchar_t* name)
{
    CString text;
    text.Format(Orvex::StringFromID(id), name);
    return narrow(text);
}

/// What is printed about a linetype that neither file defines.
inline std::string missingLinetype(const std::string& name, const std::string& firstFile,
                                   const std::string& secondFile)
{
    return "Can't load \"" + name + "\" linetype in file " + firstFile + " or " + secondFile +
           ", this type line type undefined !\n";
}

/// Result and printed text of a scenario, once for each of its host calls with that call failing.
/// Each run has a fresh host; `prepare` runs unharmed.
inline std::vector<std::string> outcomesOfFailures(const std::function<void()>& prepare,
                                                   const std::function<int()>& scenario)
{
    std::vector<std::string> outcomes;
    int result = 0;
    const auto note = [&] {
        outcomes.push_back(std::to_string(result) + korra::takePrintedText());
    };
    failEachCall([&] { result = scenario(); }, note,
                 [&] {
                     startFreshHost();
                     prepare();
                     korra::takePrintedText();
                 });
    return outcomes;
}

} // namespace tests
