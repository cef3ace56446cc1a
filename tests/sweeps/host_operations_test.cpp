/// Operations of the host that run out of memory: each leaves the drawing as it was.

#include "support/data_notes.h"
#include "support/room_test.h"

#include <memory>
#include <new>

namespace {

// Too long to be kept without an allocation.
const std::wstring kLong(200, L'x');
const std::wstring kFace(30, L'x');
const std::string kData = "@ACAD " + std::string(200, 'x');

/// A copy of a polyline with a vertex, a layer of another drawing and extended data.
std::unique_ptr<KdDb3dPolyline> copyOfForeign()
{
    KdDbDatabase other(true, true);
    auto polyline = std::make_unique<KdDb3dPolyline>();
    polyline->appendVertex(new KdDbVertex);
    polyline->setLayer(other.clayer());
    setData(*polyline, kData);
    return std::unique_ptr<KdDb3dPolyline>(static_cast<KdDb3dPolyline*>(polyline->clone()));
}

/// What the operations work on. What is in the drawing is open for writing, the rest free-standing.
struct Sheet {
    Sheet()
    {
        layer->setName(kLong.c_str());
        const Open<KdDbDimStyleTableRecord> other(otherStyle);
        other->setDimgap(3.0);
        other->setDimscale(2.0);
    }

    KdDbObjectId inBlock = addEntityToBlock(L"Lines", new KdDbLine);
    KdDbObjectId besideIt = addEntityToBlock(L"Lines", new KdDbLine);
    KdDbObjectId otherStyle = addRecord<KdDbDimStyleTable, KdDbDimStyleTableRecord>(L"Other");
    Open<KdDbBlockTableRecord> block{blockId(L"Lines")};
    Open<KdDbLayerTable> layers{drawing()->layerTableId()};
    Open<KdDbLinetypeTableRecord> linetype{
        addRecord<KdDbLinetypeTable, KdDbLinetypeTableRecord>(L"Dashed")};
    Open<KdDbTextStyleTableRecord> style{drawing()->textstyle()};
    Open<KdDbDictionary> dictionary{drawing()->namedObjectsDictionaryId()};
    Open<KdDbMText> text{addEntity(new KdDbMText)};
    Open<KdDbDimension> dimension{addEntity(newDimension())};
    Open<KdDbPolyline> polyline{addEntity(new KdDbPolyline)};
    Open<KdDb3dPolyline> path{addEntity(new KdDb3dPolyline)};
    Open<KdDbBlockTableRecord> space{drawing()->currentSpaceId()};
    std::unique_ptr<KdDb3dPolyline> copy = copyOfForeign();
    std::unique_ptr<KdDbVertex> vertex = std::make_unique<KdDbVertex>();
    std::unique_ptr<KdDbLayerTableRecord> layer = std::make_unique<KdDbLayerTableRecord>();
    std::unique_ptr<KdDbDictionary> entry = std::make_unique<KdDbDictionary>();
    List data = listOf(kData);
};

struct Operation {
    const char* name;
    Kdapi::ErrorStatus (*run)(Sheet& sheet);

    friend void PrintTo(const Operation& each, std::ostream* out) { *out << each.name; }
};

/// Gives a free-standing object to the drawing; a refused one is still the caller's.
template <class T, class Take>
Kdapi::ErrorStatus handOver(std::unique_ptr<T>& object, Take take)
{
    KdDbObjectId id;
    const Kdapi::ErrorStatus status = take(id, object.get());
    if (status == Kdapi::eOk)
        object.release()->close();
    return status;
}

// clang-format off
const Operation kOperations[] = {
    {"NewRecord", [](Sheet& sheet) { return handOver(sheet.layer, [&](auto& id, auto* layer) { return sheet.layers->add(id, layer); }); }},
    {"CopyFromAnotherDrawing", [](Sheet& sheet) { return handOver(sheet.copy, [&](auto& id, auto* copy) { return sheet.space->appendKdDbEntity(id, copy); }); }},
    {"Part", [](Sheet& sheet) { return handOver(sheet.vertex, [&](auto& id, auto* vertex) { return sheet.path->appendVertex(id, vertex); }); }},
    {"Entry", [](Sheet& sheet) { return handOver(sheet.entry, [&](auto& id, auto* entry) { return sheet.dictionary->setAt(L"ENTRY", entry, id); }); }},
    {"ExtensionDictionary", [](Sheet& sheet) { return sheet.text->createExtensionDictionary(); }},
    {"ExtendedData", [](Sheet& sheet) { return sheet.text->setXData(sheet.data.get()); }},
    {"TakenContents", [](Sheet& sheet) { return sheet.path->copyFrom(sheet.copy.get()); }},
    {"Erasing", [](Sheet& sheet) { return sheet.block->erase(); }},
    {"Name", [](Sheet& sheet) { return sheet.linetype->setName(kLong.c_str()); }},
    {"Font", [](Sheet& sheet) { return sheet.style->setFont(kFace.c_str(), true, false, 0, 0, 0, false); }},
    {"FontFile", [](Sheet& sheet) { return sheet.style->setFileName(kLong.c_str()); }},
    {"Text", [](Sheet& sheet) { return sheet.text->setContents(kLong.c_str()); }},
    {"Vertex", [](Sheet& sheet) { return sheet.polyline->addVertexAt(0, {1, 2}); }},
    {"Override", [](Sheet& sheet) { return sheet.dimension->setDimlfac(3.0); }},
    {"DimensionVariables", [](Sheet& sheet) { return drawing()->setDimstyleData(sheet.otherStyle); }},
};

// clang-format on

class HostOperationTest : public TestWithParam<Operation> {};

TEST_P(HostOperationTest, WithoutMemoryLeavesTheDrawingAsItWas)
{
    bool goesOn = true;
    for (std::size_t ordinal = 1; goesOn; ++ordinal) {
        SCOPED_TRACE("allocation " + std::to_string(ordinal));
        startFreshHost();
        {
            Sheet sheet;
            const std::string before = korra::drawingText(*drawing());
            Kdapi::ErrorStatus status = Kdapi::eOutOfMemory;
            platform::failAllocation(ordinal);
            try {
                status = GetParam().run(sheet);
            } catch (const std::bad_alloc&) {
            }
            platform::releaseCalls();
            goesOn = platform::faultDelivered();
            EXPECT_TRUE(status == Kdapi::eOk || goesOn);
            if (status == Kdapi::eOk)
                EXPECT_NE(korra::drawingText(*drawing()), before);
            else
                EXPECT_EQ(korra::drawingText(*drawing()), before);
        }
        EXPECT_THAT(korra::audit(), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(Any, HostOperationTest, ValuesIn(kOperations),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
