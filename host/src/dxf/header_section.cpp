#include "dxf/header_section.h"

#include "dxf/drawing_error.h"
#include "dxf/tag_text.h"
#include "form/numbers.h"

#include <algorithm>

namespace korra {
namespace {

constexpr int kVariableName = 9;

/// A variable with the bytes that hold it and what stands among them.
struct VariableTags {
    DrawingHeader::Variable variable;
    std::string bytes;
    std::string others; ///< comments, and an end of the section with variables behind it
};

struct SectionTags {
    std::string head; ///< before the first variable
    std::vector<VariableTags> variables;
};

SectionTags takeApart(const TagList& section)
{
    SectionTags parts;
    for (std::size_t index = 0; index < section.size(); ++index) {
        const ObjectTag& tag = section[index];
        const bool isVariable = tag.part == TagPart::field && tag.code == kVariableName;
        if (isVariable)
            parts.variables.push_back({{std::string(trimmed(tag.value)), {}}, {}, {}});
        if (parts.variables.empty()) {
            parts.head += tag.raw;
            continue;
        }
        VariableTags& current = parts.variables.back();
        current.bytes += tag.raw;
        if (tag.part == TagPart::comment || tag.part == TagPart::begin)
            current.others += tag.raw;
        if (!isVariable && tag.part == TagPart::field)
            current.variable.values.push_back({tag.code, std::string(tag.value)});
    }
    return parts;
}

/// Versions are named AC and a number; from this one on texts are UTF-8.
bool isUnicodeVersion(std::string_view version)
{
    return version.starts_with("AC") && parseWhole(version.substr(2)).value_or(0) >= 1021;
}

TextEncoding encodingOf(const DrawingHeader& header, bool byteOrderMark)
{
    const std::vector<DrawingHeader::Variable>& variables = header.variables();
    const auto textOf = [&](std::string_view name) {
        const auto found = std::ranges::find(variables, name, &DrawingHeader::Variable::name);
        const bool hasValue = found != variables.end() && !found->values.empty();
        return std::string(hasValue ? trimmed(found->values.front().text) : std::string_view());
    };
    const std::string version = textOf("$ACADVER");
    const std::string codePage = textOf("$DWGCODEPAGE");
    const std::string page = codePage.empty() ? "ANSI_1252" : codePage;
    if (byteOrderMark || isUnicodeVersion(version) || (version.empty() && codePage.empty()))
        return TextEncoding("UTF-8", page);
    return TextEncoding(page);
}

std::string tagsOf(const DrawingHeader::Variable& variable, std::string_view lineEnd)
{
    return writtenAs([&] { return variable.name; },
                     [&] {
                         std::string tags;
                         appendTag(tags, kVariableName, variable.name, lineEnd);
                         for (const HeaderValue& value : variable.values)
                             appendTag(tags, value.code, value.text, lineEnd);
                         return tags;
                     });
}

} // namespace

DrawingHeader readHeader(const TagList& section, bool byteOrderMark)
{
    DrawingHeader header;
    for (VariableTags& each : takeApart(section).variables)
        header.append(std::move(each.variable));
    header.setEncoding(encodingOf(header, byteOrderMark));
    return header;
}

std::string headerWritten(std::string_view section, const DrawingHeader& header,
                          std::string_view lineEnd)
{
    const SectionTags parts = takeApart(TagList(section));
    std::string text = parts.head;
    // Variables keep their order and new ones come last, so both lists go hand in hand.
    for (std::size_t index = 0; index < header.variables().size(); ++index) {
        const DrawingHeader::Variable& variable = header.variables()[index];
        const VariableTags* there =
            index < parts.variables.size() ? &parts.variables[index] : nullptr;
        if (there && there->variable == variable)
            text += there->bytes;
        else
            text += tagsOf(variable, lineEnd) + (there ? there->others : std::string());
    }
    return text;
}

} // namespace korra
