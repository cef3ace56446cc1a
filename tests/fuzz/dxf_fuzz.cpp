// Fuzz target: a drawing is refused, or is whole and stays what it is once written.

#include "kd/db/database.h"
#include "korra/host.h"

#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    KdDbDatabase database(false);
    if (!korra::readDrawingText(database, text, "fuzz.dxf").done)
        return 0;
    const std::string written = korra::drawingText(database);
    KdDbDatabase again(false);
    if (!korra::readDrawingText(again, written, "written.dxf").done ||
        korra::drawingText(again) != written)
        std::abort();
    return 0;
}
