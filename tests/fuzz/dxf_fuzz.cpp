// Fuzz target: a drawing is refused, or is whole and stays what it is once written; after a change
// the save refuses it, or what it wrote can be read again.

#include "korra/host.h"
#include "support/changes.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void expectReadable(const std::string& written)
{
    KdDbDatabase again(false);
    if (!korra::readDrawingText(again, written, "written.dxf").done ||
        korra::drawingText(again) != written)
        std::abort();
}

void changeAndExpectReadable(const KdDbDatabase& database)
{
    tests::scaleEntities(database, 1e300);
    try {
        expectReadable(korra::drawingText(database));
    } catch (const korra::UnsavableDrawing&) { // that is no fault
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    KdDbDatabase database(false);
    if (!korra::readDrawingText(database, text, "fuzz.dxf").done)
        return 0;
    expectReadable(korra::drawingText(database)); // what could be read can be saved
    changeAndExpectReadable(database);
    return 0;
}
