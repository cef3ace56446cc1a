#include "blocks/draw_block.h"
#include "kd/db/block_record.h"
#include "kd/db/blocks.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "platform/gate.h"
#include "platform/tally.h"

#include <array>
#include <cmath>

KDRX_DEFINE_MEMBERS(KdDbBlockReference, KdDbEntity)

using korra::ObjectAccess;

namespace {

platform::Tally objectIterators("object iterator");

/// A part of an array of references.
struct Cells {
    int firstRow;
    int endRow;
    int firstColumn;
    int endColumn;

    int rows() const { return endRow - firstRow; }

    int columns() const { return endColumn - firstColumn; }

    /// Two halves, of several rows an upper and a lower one, in drawing order.
    std::array<Cells, 2> halves() const
    {
        std::array<Cells, 2> halves = {*this, *this};
        if (rows() > 1)
            halves[0].endRow = halves[1].firstRow = firstRow + rows() / 2;
        else
            halves[0].endColumn = halves[1].firstColumn = firstColumn + columns() / 2;
        return halves;
    }
};

/// Draws the cells of an array that a sink wants, without looking at each.
template <class CellTransform>
class CellDrawing {
public:
    /// @param transform  from the block's coordinates to those of the owner, by row and column
    CellDrawing(const KdDbBlockReference& reference, CellTransform transform, korra::DrawSink& sink)
        : reference_(reference),
          transform_(transform),
          sink_(sink),
          first_(korra::boxOfShown(reference.blockTableRecord(), transform(0, 0))),
          rowStep_(step(transform(1, 0))),
          columnStep_(step(transform(0, 1)))
    {
    }

    void draw(const Cells& cells)
    {
        const KdGeExtents3d box = boxAround(cells);
        if (box.isEmpty() || !sink_.wants(box))
            return;
        if (cells.rows() == 1 && cells.columns() == 1) {
            korra::drawShownBlock(reference_, korra::BlockRole::reference,
                                  reference_.blockTableRecord(),
                                  transform_(cells.firstRow, cells.firstColumn), sink_);
            return;
        }
        for (const Cells& half : cells.halves())
            draw(half);
    }

private:
    KdGeVector3d step(const KdGeMatrix3d& next) const
    {
        return next * KdGePoint3d::kOrigin - transform_(0, 0) * KdGePoint3d::kOrigin;
    }

    /// All cells lie between those in the corners.
    KdGeExtents3d boxAround(const Cells& cells) const
    {
        KdGeExtents3d box;
        if (first_.isEmpty())
            return box;
        for (const int row : {cells.firstRow, cells.endRow - 1}) {
            for (const int column : {cells.firstColumn, cells.endColumn - 1}) {
                const KdGeVector3d offset = rowStep_ * row + columnStep_ * column;
                box.addPoint(first_.minPoint() + offset);
                box.addPoint(first_.maxPoint() + offset);
            }
        }
        return box;
    }

    const KdDbBlockReference& reference_;
    CellTransform transform_;
    korra::DrawSink& sink_;
    KdGeExtents3d first_; ///< of the first cell
    KdGeVector3d rowStep_;
    KdGeVector3d columnStep_;
};

bool areAtRightAngles(const KdGeVector3d& a, const KdGeVector3d& b)
{
    return std::abs(a.dotProduct(b)) <= 1e-9 * a.length() * b.length();
}

} // namespace

KdDbObjectIterator::KdDbObjectIterator(std::vector<KdDbObjectId> ids) : ids_(std::move(ids))
{
    objectIterators.add();
}

KdDbObjectIterator::~KdDbObjectIterator()
{
    objectIterators.remove();
}

KdDbBlockReference::KdDbBlockReference(const KdGePoint3d& position, KdDbObjectId blockTableRecord)
    : block_(blockTableRecord), position_(position)
{
}

KdGePoint3d KdDbBlockReference::position() const
{
    return place_.toBlock() * position_;
}

Kdapi::ErrorStatus KdDbBlockReference::setScaleFactors(const KdGeScale3d& scale)
{
    return setIf("KdDbBlockReference::setScaleFactors",
                 scale.sx != 0.0 && scale.sy != 0.0 && scale.sz != 0.0, scale_, scale);
}

Kdapi::ErrorStatus KdDbBlockReference::setRotation(double rotation)
{
    return set("KdDbBlockReference::setRotation", rotation_, rotation);
}

KdGeMatrix3d KdDbBlockReference::insertion() const
{
    return place_.toBlock() * KdGeMatrix3d::translation(position_.asVector()) *
           KdGeMatrix3d::rotation(rotation_, KdGeVector3d::kZAxis);
}

KdGeMatrix3d KdDbBlockReference::definitionToCell() const
{
    const auto* const record = ObjectAccess::live<KdDbBlockTableRecord>(block_);
    const KdGePoint3d base = record ? record->origin() : KdGePoint3d::kOrigin;
    return KdGeMatrix3d::scaling(scale_) * KdGeMatrix3d::translation(-base.asVector());
}

KdGeMatrix3d KdDbBlockReference::blockTransform() const
{
    return insertion() * definitionToCell();
}

Kdapi::ErrorStatus KdDbBlockReference::appendAttribute(KdDbObjectId& id, KdDbAttribute* attribute)
{
    return platform::gate("KdDbBlockReference::appendAttribute", objectId())
        .guard(Kdapi::eNotOpenForWrite,
               [&] { return ObjectAccess::appendPart(*this, attribute, id); });
}

KdDbObjectIterator* KdDbBlockReference::attributeIterator() const
{
    return platform::gate("KdDbBlockReference::attributeIterator", objectId())
        .guard(nullptr, [&]() -> KdDbObjectIterator* {
            std::vector<KdDbObjectId> ids;
            for (const KdDbAttribute* attribute : attributes_.each()) {
                if (!attribute->isErased() && attribute->database())
                    ids.push_back(attribute->objectId());
            }
            return new KdDbObjectIterator(std::move(ids));
        });
}

Kdapi::ErrorStatus KdDbBlockReference::transformBy(const KdGeMatrix3d& matrix)
{
    // The texts of attributes cannot be stretched one way.
    const Takes taken = attributes_.isEmpty() ? Takes::affineMaps : Takes::similarities;
    return transform(matrix, taken, [&] {
        KdGePoint3d origin;
        KdGeVector3d x;
        KdGeVector3d y;
        KdGeVector3d z;
        (matrix * insertion()).getCoordSystem(origin, x, y, z);
        if (!areAtRightAngles(x, y) || !areAtRightAngles(y, z) || !areAtRightAngles(z, x))
            return Kdapi::eCannotScaleNonUniformly;

        // A mirroring turns the y axis over, so that the axes stay right-handed.
        const double side = x.crossProduct(y).dotProduct(z) < 0.0 ? -1.0 : 1.0;
        scale_ = KdGeScale3d(scale_.sx * x.length(), scale_.sy * y.length() * side,
                             scale_.sz * z.length());
        columnSpacing_ *= x.length();
        rowSpacing_ *= y.length() * side;
        place_.setNormal(z);
        rotation_ = place_.angleOf(x);
        position_ = place_.toPlane() * origin;
        for (KdDbAttribute* attribute : attributes_.each())
            attribute->moveBySimilarity(matrix);
        return Kdapi::eOk;
    });
}

void KdDbBlockReference::draw(korra::DrawSink& sink) const
{
    const auto transform = [this, toBlock = insertion(), toCell = definitionToCell()](int row,
                                                                                      int column) {
        const KdGeVector3d offset(column * columnSpacing_, row * rowSpacing_, 0.0);
        return toBlock * KdGeMatrix3d::translation(offset) * toCell;
    };
    CellDrawing(*this, transform, sink).draw({0, rows(), 0, columns()});
    for (const KdDbAttribute* attribute : attributes_.each()) {
        if (attribute->isErased() || korra::isHidden(*attribute, sink))
            continue;
        sink.beginPart(attribute->objectId(), korra::PartRole::attribute);
        attribute->draw(sink);
        sink.endPart();
    }
}

void KdDbBlockReference::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "BlockReference");
    visitor.derived(66, attributes_.isEmpty() ? 0 : 1);
    visitor.name(2, block_, korra::TableKind::block);
    visitor.point(10, position_);
    visitor.real(41, scale_.sx, 1.0);
    visitor.real(42, scale_.sy, 1.0);
    visitor.real(43, scale_.sz, 1.0);
    visitor.angle(50, rotation_, 0.0);
    visitor.integer(70, columns_, 1);
    visitor.integer(71, rows_, 1);
    visitor.real(44, columnSpacing_, 0.0);
    visitor.real(45, rowSpacing_, 0.0);
    place_.describeNormal(visitor);
    visitor.owned(attributes_);
}
