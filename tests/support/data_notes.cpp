#include "support/data_notes.h"

#include "platform/text.h"

#include <gtest/gtest.h>

#include <sstream>

namespace tests {
namespace {

resbuf* newNode(const std::string& token)
{
    const std::wstring text(token.begin(), token.end());
    if (token[0] == '@')
        return kdutBuildList(1001, text.c_str() + 1, 0);
    if (token[0] == 'i')
        return kdutBuildList(1070, std::stoi(token.substr(1)), 0);
    if (token[0] == 'r')
        return kdutBuildList(1040, std::stod(token.substr(1)), 0);
    return kdutBuildList(token == "{" || token == "}" ? 1002 : 1000, text.c_str(), 0);
}

std::string noteOf(const resbuf& node)
{
    std::ostringstream note;
    if (node.restype == 1070)
        note << 'i' << node.resval.rint;
    else if (node.restype == 1040)
        note << 'r' << node.resval.rreal;
    else
        note << (node.restype == 1001 ? "@" : "") << platform::toUtf8(node.resval.rstring);
    return note.str();
}

} // namespace

List listOf(const std::string& line)
{
    resbuf* head = nullptr;
    resbuf** end = &head;
    std::istringstream tokens(line);
    for (std::string token; tokens >> token; end = &(*end)->rbnext)
        *end = newNode(token);
    return {head, kdutRelRb};
}

std::string dataOf(const KdDbObject& object, const wchar_t* application)
{
    std::string line;
    const List data(object.xData(application), kdutRelRb);
    for (const resbuf* node = data.get(); node; node = node->rbnext) {
        if (!line.empty())
            line += ' ';
        line += noteOf(*node);
    }
    return line;
}

void setData(KdDbObject& object, const std::string& line)
{
    EXPECT_EQ(object.setXData(listOf(line).get()), Kdapi::eOk) << line;
}

} // namespace tests
