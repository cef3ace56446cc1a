#include "dxf/atomic_file.h"
#include "dxf/binary_form.h"
#include "dxf/drawing_assembly.h"
#include "dxf/drawing_writer.h"
#include "dxf/file_text.h"
#include "dxf/object_kinds.h"
#include "korra/host.h"
#include "objects/contents.h"
#include "platform/gate.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <new>

namespace korra {
namespace {

/// @param line  0: none
std::string located(const std::string& name, std::size_t line, const std::string& what)
{
    return name + (line > 0 ? ':' + std::to_string(line) : std::string()) + ": " + what;
}

FileOutcome failure(const std::string& name, std::size_t line, const std::string& what)
{
    return {false, located(name, line, what)};
}

bool hasNoPicture(const ReadObject& read)
{
    const bool isEntity = read.place == FilePlace::entities || read.place == FilePlace::block;
    return isEntity && isUnknown(*read.object) && typeName(*read.object) != "SEQEND";
}

/// "12 HATCH, 3 SPLINE are kept but not shown"; empty when every entity is shown.
std::string notShown(const ReadFile& file)
{
    std::map<std::string, int> counts;
    int total = 0;
    for (const ReadObject& read : file.objects) {
        if (!hasNoPicture(read))
            continue;
        ++counts[printable(typeName(*read.object))];
        ++total;
    }
    if (total == 0)
        return {};
    std::vector<std::pair<std::string, int>> sorted(counts.begin(), counts.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(), &std::pair<std::string, int>::second);
    std::string list;
    for (const auto& [type, count] : sorted)
        list += (list.empty() ? "" : ", ") + std::to_string(count) + ' ' + type;
    return list + (total == 1 ? " is" : " are") + " kept but not shown";
}

std::vector<std::string> notesOn(const ReadFile& file, const std::string& name)
{
    std::vector<std::string> notes;
    if (file.lineBehindEnd > 0)
        notes.push_back(located(name, file.lineBehindEnd,
                                "what stands behind the end of the drawing is kept but not read"));
    if (const std::string kept = notShown(file); !kept.empty())
        notes.push_back(located(name, 0, kept));
    return notes;
}

/// @param size  of the file; 0 when nobody knows
FileOutcome readFrom(KdDbDatabase& database, const ReadBytes& read, std::size_t size,
                     const std::string& name)
{
    DatabaseContents& contents = database.contents();
    if (!contents.slots.empty())
        return failure(name, 0, "cannot be read into a database that holds a drawing");
    try {
        ReadFile file = FileScanner(inAsciiForm(wholeText(read, size))).scan();
        FileOutcome outcome{true, {}, notesOn(file, name)};
        DrawingAssembly(contents, file).run();
        return outcome;
    } catch (const DrawingError& error) {
        contents.clear();
        return failure(name, error.line, error.what);
    } catch (const std::bad_alloc&) {
        contents.clear();
        return failure(name, 0, "does not fit into memory");
    }
}

/// Regions that were made here are no regions any more where they are read again.
std::vector<std::string> notesOnRegions(const DatabaseContents& contents, const std::string& name)
{
    const bool hasRegions = std::ranges::any_of(contents.slots, [](const ObjectSlot* slot) {
        return !slot->erased && KdDbRegion::cast(slot->object) && !isUnknown(*slot->object);
    });
    if (!hasRegions)
        return {};
    return {located(name, 0, "regions that were made here are saved as the curves around them")};
}

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

} // namespace

FileOutcome readDrawing(KdDbDatabase& database, const std::string& path)
{
    const platform::TurnOf turn(platform::Party::host);
    const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return failure(path, 0, std::string("cannot be read: ") + std::strerror(errno));
    const auto read = [&](char* buffer, std::size_t size) {
        const std::size_t count = std::fread(buffer, 1, size, file.get());
        if (count == 0 && std::ferror(file.get()))
            throw DrawingError{0, std::string("cannot be read: ") + std::strerror(errno)};
        return count;
    };
    std::error_code unknown;
    const auto size = std::filesystem::file_size(path, unknown);
    return readFrom(database, read, unknown ? 0 : size, path);
}

FileOutcome readDrawingText(KdDbDatabase& database, const std::string& text,
                            const std::string& name)
{
    const platform::TurnOf turn(platform::Party::host);
    std::string_view rest = text;
    const auto read = [&](char* buffer, std::size_t size) {
        const std::size_t count = std::min(size, rest.size());
        std::copy_n(rest.begin(), count, buffer);
        rest.remove_prefix(count);
        return count;
    };
    return readFrom(database, read, text.size(), name);
}

FileOutcome writeDrawing(const KdDbDatabase& database, const std::string& path)
{
    const platform::TurnOf turn(platform::Party::host);
    try {
        const std::string problem = replaceFile(path, drawingText(database));
        return problem.empty() ? FileOutcome{true, {}, notesOnRegions(database.contents(), path)}
                               : failure(path, 0, problem);
    } catch (const UnsavableDrawing& error) {
        return failure(path, 0, error.what());
    }
}

std::string drawingText(const KdDbDatabase& database)
{
    const platform::TurnOf turn(platform::Party::host);
    try {
        return DrawingWriter(database.contents()).text();
    } catch (const DrawingError& error) {
        throw UnsavableDrawing("cannot be saved: " + error.what);
    }
}

} // namespace korra
