#include "dxf/atomic_file.h"
#include "dxf/drawing_assembly.h"
#include "dxf/drawing_writer.h"
#include "korra/host.h"
#include "objects/contents.h"
#include "platform/gate.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

namespace korra {
namespace {

FileOutcome failure(const std::string& name, std::size_t line, const std::string& what)
{
    return {false, name + (line > 0 ? ':' + std::to_string(line) : std::string()) + ": " + what};
}

FileOutcome readFrom(KdDbDatabase& database, TagStream::ReadBytes read, const std::string& name)
{
    DatabaseContents& contents = database.contents();
    if (!contents.slots.empty())
        return failure(name, 0, "cannot be read into a database that holds a drawing");
    try {
        ReadFile file = FileScanner(std::move(read)).scan();
        DrawingAssembly(contents, file).run();
        return {true, {}};
    } catch (const DrawingError& error) {
        contents.clear();
        return failure(name, error.line, error.what);
    } catch (const std::bad_alloc&) {
        contents.clear();
        return failure(name, 0, "does not fit into memory");
    }
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
    return readFrom(database, read, path);
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
    return readFrom(database, read, name);
}

FileOutcome writeDrawing(const KdDbDatabase& database, const std::string& path)
{
    const platform::TurnOf turn(platform::Party::host);
    try {
        const std::string problem = replaceFile(path, drawingText(database));
        return problem.empty() ? FileOutcome{true, {}} : failure(path, 0, problem);
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
