#pragma once

#include "orvex/shell.h"

#include "support/room_test.h"

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

} // namespace tests
