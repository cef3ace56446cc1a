#pragma once

#include "kd/db.h"

#include <memory>
#include <string>

/// Extended data noted as a line: "@ACAD DSTYLE { i40 r2.5 }" is an application, a text, an integer
/// and a real between braces.
namespace tests {

using List = std::unique_ptr<resbuf, decltype(&kdutRelRb)>;

List listOf(const std::string& line);

/// The data of an application; of all without one.
std::string dataOf(const KdDbObject& object, const wchar_t* application = nullptr);

void setData(KdDbObject& object, const std::string& line);

} // namespace tests
