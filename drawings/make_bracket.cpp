// Draws the sheet of a bearing bracket through the host's own interface and writes it to a file:
// three views, dimensions of each kind, nested blocks, a title block with attributes, and a sheet
// that sees the model through two viewports of different scale and direction. A drawing that is
// named behind the file is what it is drawn into.

#include "kd/db.h"
#include "korra/host.h"

#include <cstdio>
#include <initializer_list>
#include <numbers>

namespace {

constexpr double kPi = std::numbers::pi;

struct Vertex {
    double x, y, bulge;
};

KdDbDatabase& drawing()
{
    return *kddbHostApplicationServices()->workingDatabase();
}

template <class Table, class Record>
KdDbObjectId addRecord(const wchar_t* name, Record* record)
{
    Table* table = nullptr;
    drawing().getSymbolTable(table, KdDb::kForWrite);
    record->setName(name);
    KdDbObjectId id;
    table->add(id, record);
    record->close();
    table->close();
    return id;
}

KdDbObjectId addLayer(const wchar_t* name, std::uint16_t colorIndex)
{
    auto* const layer = new KdDbLayerTableRecord;
    KdCmColor color;
    color.setColorIndex(colorIndex);
    layer->setColor(color);
    layer->setLinetypeObjectId(drawing().continuousLinetype());
    return addRecord<KdDbLayerTable>(name, layer);
}

struct Layers {
    KdDbObjectId outline = addLayer(L"OUTLINE", 7);
    KdDbObjectId centre = addLayer(L"CENTRE", 1);
    KdDbObjectId dimension = addLayer(L"DIMENSION", 3);
    KdDbObjectId text = addLayer(L"TEXT", 4);
    KdDbObjectId window = addLayer(L"WINDOW", 8);
};

KdDbObjectId addDimensionStyle()
{
    auto* const style = new KdDbDimStyleTableRecord;
    style->setDimscale(1.4);
    style->setDimdec(1);
    style->setDimtad(1);
    style->setDimgap(0.8);
    style->setDimtih(false);
    style->setDimtoh(false);
    return addRecord<KdDbDimStyleTable>(L"MACHINE", style);
}

/// A block that entities are added to, one after the other.
class Block {
public:
    explicit Block(KdDbObjectId id) : id_(id) {}

    explicit Block(const wchar_t* name)
        : Block(addRecord<KdDbBlockTable>(name, new KdDbBlockTableRecord))
    {
    }

    KdDbObjectId id() const { return id_; }

    /// Adds an entity on a layer and leaves it open.
    template <class T>
    T* open(T* entity, KdDbObjectId layer) const
    {
        KdDbBlockTableRecord* record = nullptr;
        kddbOpenObject(record, id_, KdDb::kForWrite);
        entity->setDatabaseDefaults(&drawing());
        entity->setLayer(layer);
        record->appendKdDbEntity(entity);
        record->close();
        return entity;
    }

    KdDbObjectId add(KdDbEntity* entity, KdDbObjectId layer) const
    {
        open(entity, layer);
        const KdDbObjectId id = entity->objectId();
        entity->close();
        return id;
    }

    KdDbObjectId dimension(KdDbDimension* dimension, KdDbObjectId style, KdDbObjectId layer) const
    {
        dimension->setDimensionStyle(style);
        return add(dimension, layer);
    }

private:
    KdDbObjectId id_;
};

KdDbPolyline* polyline(std::initializer_list<Vertex> vertices)
{
    auto* const result = new KdDbPolyline;
    for (const Vertex& vertex : vertices)
        result->addVertexAt(result->numVerts(), {vertex.x, vertex.y}, vertex.bulge);
    result->setClosed(true);
    return result;
}

KdDbLine* line(double x1, double y1, double x2, double y2)
{
    return new KdDbLine({x1, y1, 0}, {x2, y2, 0});
}

KdDbCircle* circle(double x, double y, double radius)
{
    return new KdDbCircle({x, y, 0}, KdGeVector3d::kZAxis, radius);
}

KdDbObjectId drawCentreMark(const Layers& layers)
{
    const Block mark(L"CENTRE-MARK");
    mark.add(line(-1, 0, 1, 0), layers.centre);
    mark.add(line(0, -1, 0, 1), layers.centre);
    return mark.id();
}

/// A hole of radius 5 with its centre mark, a block in a block.
KdDbObjectId drawBoltHole(const Layers& layers, KdDbObjectId centreMark)
{
    const Block hole(L"BOLT-HOLE");
    hole.add(circle(0, 0, 5), layers.outline);
    auto* const mark = new KdDbBlockReference({0, 0, 0}, centreMark);
    mark->setScaleFactors(KdGeScale3d(7));
    hole.add(mark, layers.centre);
    return hole.id();
}

/// A lubrication boss, drawn once and dimensioned inside its block.
KdDbObjectId drawGreasePort(const Layers& layers, KdDbObjectId style)
{
    const Block port(L"GREASE-PORT");
    port.add(polyline({{0, 0, 0}, {18, 0, 0}, {18, 10, 1}, {0, 10, 0}}), layers.outline);
    port.add(circle(9, 10, 3), layers.outline);
    port.dimension(new KdDbRotatedDimension(0, {0, 0, 0}, {18, 0, 0}, {0, -8, 0}), style,
                   layers.dimension);
    return port.id();
}

void drawFrontView(const Block& model, const Layers& layers, KdDbObjectId style,
                   KdDbObjectId boltHole)
{
    constexpr double quarter = 0.41421356237309503; // bulge of a quarter turn
    model.add(polyline({{12, 0, 0},
                        {148, 0, quarter},
                        {160, 12, 0},
                        {160, 88, quarter},
                        {148, 100, 0},
                        {12, 100, quarter},
                        {0, 88, 0},
                        {0, 12, quarter}}),
              layers.outline);
    model.add(circle(80, 50, 30), layers.outline);
    model.add(circle(80, 50, 20), layers.outline);
    for (const auto& [x, y] : {std::pair(20.0, 20.0), {140.0, 20.0}, {140.0, 80.0}, {20.0, 80.0}})
        model.add(new KdDbBlockReference({x, y, 0}, boltHole), layers.outline);
    model.add(line(45, 50, 115, 50), layers.centre);
    model.add(line(80, 15, 80, 85), layers.centre);

    model.dimension(new KdDbRotatedDimension(0, {0, 0, 0}, {160, 0, 0}, {0, -25, 0}), style,
                    layers.dimension);
    model.dimension(new KdDbRotatedDimension(kPi / 2, {0, 0, 0}, {0, 100, 0}, {-20, 0, 0}), style,
                    layers.dimension);
    model.dimension(new KdDbAlignedDimension({20, 80, 0}, {80, 50, 0}, {30, 100, 0}), style,
                    layers.dimension);
    model.dimension(new KdDbDiametricDimension({101.21320343559643, 71.21320343559643, 0},
                                               {58.78679656440357, 28.78679656440357, 0}, 20),
                    style, layers.dimension);
    model.dimension(
        new KdDbRadialDimension({148, 88, 0}, {156.48528137423857, 96.48528137423857, 0}, 15),
        style, layers.dimension);
}

void drawSideView(const Block& model, const Layers& layers, KdDbObjectId style)
{
    auto* const web = model.open(new KdDb2dPolyline, layers.outline);
    for (const KdGePoint3d& point : {KdGePoint3d(220, 0, 0), KdGePoint3d(260, 0, 0),
                                     KdGePoint3d(250, 100, 0), KdGePoint3d(220, 100, 0)}) {
        auto* const vertex = new KdDbVertex(point, 0);
        web->appendVertex(vertex);
        vertex->close();
    }
    web->close();
    model.add(line(260, 0, 250, 100), layers.outline);
    model.add(line(220, 0, 220, 100), layers.outline);
    model.dimension(new KdDbAngularDimension({260, 0, 0}, {300, 0, 0}, {250, 100, 0}, {285, 25, 0}),
                    style, layers.dimension);
    model.dimension(new KdDbRotatedDimension(0, {220, 100, 0}, {250, 100, 0}, {220, 115, 0}), style,
                    layers.dimension);
    auto* const rib = model.open(new KdDb3dPolyline, layers.outline);
    for (const KdGePoint3d& point : {KdGePoint3d(225, 20, 0), KdGePoint3d(225, 20, 40),
                                     KdGePoint3d(225, 80, 40), KdGePoint3d(225, 80, 0)}) {
        auto* const vertex = new KdDbVertex(point, 0);
        rib->appendVertex(vertex);
        vertex->close();
    }
    rib->close();
}

void drawModel(const Layers& layers, KdDbObjectId style)
{
    const Block model(drawing().currentSpaceId());
    const KdDbObjectId boltHole = drawBoltHole(layers, drawCentreMark(layers));
    const KdDbObjectId greasePort = drawGreasePort(layers, style);
    drawFrontView(model, layers, style, boltHole);
    drawSideView(model, layers, style);

    auto* const port = new KdDbBlockReference({40, 150, 0}, greasePort);
    port->setScaleFactors(KdGeScale3d(2));
    model.add(port, layers.outline);
    auto* const turned = new KdDbBlockReference({180, 150, 0}, greasePort);
    turned->setRotation(kPi / 6);
    model.add(turned, layers.outline);

    model.add(new KdDbArc({80, 50, 0}, 38, kPi / 6, kPi * 5 / 6), layers.centre);
    model.add(new KdDbPoint({80, 50, 0}), layers.centre);
    auto* const note = new KdDbMText;
    note->setLocation({0, -50, 0});
    note->setTextHeight(5);
    note->setWidth(150);
    note->setContents(L"Break sharp edges 0.5\\PAll dimensions in millimetres");
    model.add(note, layers.text);
    model.add(new KdDbText({210, -20, 0}, L"SIDE VIEW", 5), layers.text);
}

struct TitleField {
    const wchar_t* tag;
    const wchar_t* value;
    double x, y, height;
};

constexpr TitleField kTitleFields[] = {
    {L"TITLE", L"BEARING BRACKET", 5, 27, 5}, {L"NUMBER", L"OB-1042", 5, 15, 4},
    {L"MATERIAL", L"EN-GJL-250", 60, 15, 4},  {L"SCALE", L"1:1, 1:2", 5, 4, 3.5},
    {L"DRAWN", L"K. Adler", 60, 4, 3.5},
};

KdDbObjectId drawTitleBlock(const Layers& layers)
{
    const Block title(L"TITLE-BLOCK");
    title.add(polyline({{0, 0, 0}, {120, 0, 0}, {120, 36, 0}, {0, 36, 0}}), layers.outline);
    title.add(line(0, 11, 120, 11), layers.outline);
    title.add(line(0, 22, 120, 22), layers.outline);
    title.add(line(55, 0, 55, 22), layers.outline);
    for (const TitleField& field : kTitleFields)
        title.add(new KdDbAttributeDefinition({field.x, field.y, 0}, field.value, field.tag,
                                              field.tag, field.height),
                  layers.text);
    return title.id();
}

void insertTitleBlock(const Block& sheet, const Layers& layers, KdDbObjectId titleBlock)
{
    const KdGePoint3d corner(290, 10, 0);
    auto* const reference = sheet.open(new KdDbBlockReference(corner, titleBlock), layers.text);
    for (const TitleField& field : kTitleFields) {
        auto* const attribute = new KdDbAttribute({corner.x + field.x, corner.y + field.y, 0},
                                                  field.value, field.tag, field.height);
        KdDbObjectId ignored;
        attribute->setDatabaseDefaults(&drawing());
        attribute->setLayer(layers.text);
        reference->appendAttribute(ignored, attribute);
        attribute->close();
    }
    reference->close();
}

struct Window {
    KdGePoint3d center;
    double width, height;
    KdGePoint2d viewCenter;
    double viewHeight;
    KdGeVector3d direction;
    double twist;
    short number;
};

void addWindow(const Block& sheet, const Layers& layers, const Window& window)
{
    auto* const viewport = new KdDbViewport;
    viewport->setCenterPoint(window.center);
    viewport->setWidth(window.width);
    viewport->setHeight(window.height);
    viewport->setViewCenter(window.viewCenter);
    viewport->setViewHeight(window.viewHeight);
    viewport->setViewDirection(window.direction);
    viewport->setTwistAngle(window.twist);
    viewport->setNumber(window.number);
    sheet.add(viewport, layers.window);
}

KdDbObjectId sheetBlock()
{
    KdDbBlockTable* table = nullptr;
    drawing().getSymbolTable(table, KdDb::kForRead);
    KdDbObjectId id;
    table->getIdAt(L"*Paper_Space", id);
    table->close();
    return id;
}

void drawSheet(const Layers& layers)
{
    const Block sheet(sheetBlock());
    sheet.add(polyline({{5, 5, 0}, {415, 5, 0}, {415, 292, 0}, {5, 292, 0}}), layers.outline);
    insertTitleBlock(sheet, layers, drawTitleBlock(layers));
    // The front view at 1:1 from above, the whole part at 1:2 from the front right, turned a
    // little.
    addWindow(sheet, layers, {{120, 170, 0}, 210, 180, {80, 45}, 180, KdGeVector3d::kZAxis, 0, 2});
    addWindow(sheet, layers,
              {{320, 200, 0}, 170, 150, {100, 40}, 300, KdGeVector3d(1, -1, 2), kPi / 18, 3});
    sheet.add(new KdDbText({20, 20, 0}, L"FIRST ANGLE PROJECTION", 4), layers.text);
}

korra::FileOutcome begin(const char* path)
{
    KdApDocument* document = path ? nullptr : korra::newDocument();
    return path ? korra::openDocument(path, document) : korra::FileOutcome{true, {}};
}

korra::FileOutcome draw(const char* path)
{
    const Layers layers;
    drawModel(layers, addDimensionStyle());
    drawSheet(layers);
    return korra::writeDrawing(drawing(), path);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 && argc != 3) {
        std::fprintf(stderr, "usage: make_bracket FILE.dxf [TEMPLATE.dxf]\n");
        return 2;
    }
    korra::startHost();
    korra::FileOutcome outcome = begin(argv[2]); // null behind the last argument
    if (outcome.done)
        outcome = draw(argv[1]);
    if (!outcome.done)
        std::fprintf(stderr, "%s\n", outcome.message.c_str());
    korra::stopHost();
    return outcome.done ? 0 : 3;
}
