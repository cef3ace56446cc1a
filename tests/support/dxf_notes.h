#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Drawings in the exchange format, noted briefly: "0 LINE; 8 0" stands for the tags of code 0 and
/// value "LINE" and of code 8 and value "0"; a line end parts tags as "; " does.
namespace tests::dxf {

/// The file of a drawing that is noted briefly.
inline std::string file(std::string_view notes)
{
    std::string text;
    while (!notes.empty()) {
        const std::size_t end = std::min(notes.find('\n'), notes.find("; "));
        const std::string_view tag = notes.substr(0, end);
        const std::size_t codeEnd = std::min(tag.find(' '), tag.size());
        text.append(codeEnd < 3 ? 3 - codeEnd : 0, ' ').append(tag.substr(0, codeEnd)) += '\n';
        text.append(tag.substr(std::min(codeEnd + 1, tag.size()))) += '\n';
        notes.remove_prefix(end == notes.npos ? notes.size() : end + (notes[end] == ';' ? 2 : 1));
    }
    return text;
}

/// A drawing with these entities and no more.
inline std::string withEntities(std::string_view notes)
{
    return file("0 SECTION; 2 ENTITIES\n" + std::string(notes) + "\n0 ENDSEC\n0 EOF\n");
}

inline std::string replaced(std::string text, std::string_view what, std::string_view by)
{
    const std::size_t place = text.find(what);
    EXPECT_NE(place, std::string::npos) << "the sample has no " << what;
    return place == std::string::npos ? text : text.replace(place, what.size(), by);
}

/// Tags that are to be replaced and what comes in their place, both noted briefly.
using Retags = std::vector<std::pair<std::string, std::string>>;

inline std::string retagged(std::string text, const Retags& retags)
{
    for (const auto& [what, by] : retags)
        text = replaced(std::move(text), file(what), file(by));
    return text;
}

} // namespace tests::dxf
