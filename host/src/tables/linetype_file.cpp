#include "tables/linetype_file.h"

#include "form/numbers.h"
#include "objects/contents.h"
#include "objects/host_opened.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

namespace fs = std::filesystem;

namespace korra {
namespace {

constexpr std::size_t kFewestDashes = 2;
constexpr std::size_t kMostDashes = 12;

std::wstring_view trimmedWide(std::wstring_view text)
{
    return platform::trimmedLeft(platform::trimmedRight(text));
}

/// Takes the text up to a mark off the front of another; all of it when there is no such mark.
std::wstring_view takeUpTo(wchar_t mark, std::wstring_view& text)
{
    const std::size_t end = std::min(text.find(mark), text.size());
    const std::wstring_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

/// The next line that says something, without its comment; empty at the end.
std::wstring_view takeLine(std::wstring_view& text)
{
    while (!text.empty()) {
        std::wstring_view line = takeUpTo(L'\n', text);
        line = trimmedWide(takeUpTo(L';', line));
        if (!line.empty())
            return line;
    }
    return {};
}

/// The lengths of a pattern line; nullopt for anything that is no simple pattern.
std::optional<std::vector<double>> readPattern(std::wstring_view line)
{
    const std::wstring_view alignment = trimmedWide(takeUpTo(L',', line));
    if (platform::compareNoCase(alignment, L"A") != 0)
        return std::nullopt;
    std::vector<double> dashes;
    for (bool more = true; more;) {
        more = line.find(L',') != std::wstring_view::npos;
        const auto length = parseReal(platform::toUtf8(takeUpTo(L',', line)));
        if (!length)
            return std::nullopt;
        dashes.push_back(*length);
    }
    const bool hasGap = std::ranges::any_of(dashes, [](double length) { return length < 0.0; });
    const bool usable = dashes.size() >= kFewestDashes && dashes.size() <= kMostDashes &&
                        dashes.front() >= 0.0 && hasGap;
    return usable ? std::optional(std::move(dashes)) : std::nullopt;
}

/// The text of a file: UTF-8, or else in the code page of the drawing.
std::wstring decoded(std::string_view bytes, const TextEncoding& encoding)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kByteOrderMark))
        bytes.remove_prefix(kByteOrderMark.size());
    std::wstring text = platform::fromUtf8(bytes);
    const bool isUtf8 = platform::toUtf8(text) == bytes;
    return isUtf8 ? text : encoding.decode(bytes);
}

Kdapi::ErrorStatus readBytes(const std::wstring& path, std::string& bytes)
{
    const fs::path file = platform::toBytes(path);
    std::error_code error;
    if (!fs::exists(file, error))
        return Kdapi::eFileNotFound;
    std::ifstream stream(file, std::ios::binary);
    if (!fs::is_regular_file(file, error) || !stream)
        return Kdapi::eFileAccess;
    bytes.assign(std::istreambuf_iterator<char>(stream), {});
    return stream.bad() ? Kdapi::eFileAccess : Kdapi::eOk;
}

/// Gives a linetype that the drawing has the pattern of a definition.
Kdapi::ErrorStatus redefine(KdDbObjectId id, const LinetypeDefinition& definition)
{
    const HostOpened<KdDbLinetypeTableRecord> record(id, KdDb::kForWrite);
    if (!record)
        return record.status();
    ObjectAccess::noteChange(*record);
    const Kdapi::ErrorStatus status =
        record->setPattern(definition.comments.c_str(), definition.dashes);
    // The tags of the old pattern go with it: those of shapes and texts have no field.
    if (status == Kdapi::eOk)
        ObjectAccess::setSource(*record, {});
    return status;
}

Kdapi::ErrorStatus addLinetype(KdDbDatabase& database, const LinetypeDefinition& definition)
{
    const HostOpened<KdDbLinetypeTable> table(database.linetypeTableId(), KdDb::kForWrite);
    if (!table)
        return table.status();
    auto record = std::make_unique<KdDbLinetypeTableRecord>();
    ObjectAccess::setName(*record, definition.name);
    record->setPattern(definition.comments.c_str(), definition.dashes);
    ObjectAccess::append(*table, record.get(), Opening::closed);
    static_cast<void>(record.release());
    return Kdapi::eOk;
}

} // namespace

Kdapi::ErrorStatus findLinetype(std::wstring_view file, std::wstring_view name,
                                LinetypeDefinition& found)
{
    for (std::wstring_view line = takeLine(file); !line.empty(); line = takeLine(file)) {
        if (!line.starts_with(L'*'))
            continue;
        line.remove_prefix(1);
        const std::wstring_view defined = trimmedWide(takeUpTo(L',', line));
        if (platform::compareNoCase(defined, name) != 0)
            continue;
        auto dashes = readPattern(takeLine(file));
        if (!dashes)
            return Kdapi::eBadLineTypeDefinition;
        found = {std::wstring(defined), std::wstring(trimmedWide(line)), std::move(*dashes)};
        return Kdapi::eOk;
    }
    return Kdapi::eUndefinedLineType;
}

} // namespace korra

Kdapi::ErrorStatus KdDbDatabase::loadLineTypeFile(const wchar_t* name, const wchar_t* path)
{
    return platform::throwingGate("KdDbDatabase::loadLineTypeFile", name, path)
        .guard(Kdapi::eFileAccess, [&] {
            if (!name || !*name || !path)
                return Kdapi::eInvalidInput;
            std::string bytes;
            if (const auto status = korra::readBytes(path, bytes))
                return status;
            korra::LinetypeDefinition definition;
            const std::wstring text = korra::decoded(bytes, contents_->header.encoding());
            if (const auto status = korra::findLinetype(text, name, definition))
                return status;
            const KdDbObjectId known = contents_->record(korra::TableKind::linetype, name);
            return known.isNull() ? korra::addLinetype(*this, definition)
                                  : korra::redefine(known, definition);
        });
}
