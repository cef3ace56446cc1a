#pragma once

#include "kd/db/entity.h"
#include "kd/own/own.h"
#include "kd/own/planar_place.h"

#include <memory>
#include <vector>

/// An entity that is one curve: it owns no mathematics but gives its geometry.
///
/// Distances are arc lengths from the start, in drawing units. The parameter is the angle of a
/// circle, an arc and an ellipse; it runs from 0 to 1 along a line, by 1 along each segment of a
/// polyline, over the knots of a spline. Where nothing else is said the operations return eOk, or
/// leave the result untouched and return eDegenerateGeometry for a curve without geometry,
/// eNotApplicable for what an unbounded line does not have.
class KdDbCurve : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbCurve)
public:
    virtual bool isClosed() const;

    virtual Kdapi::ErrorStatus getStartPoint(KdGePoint3d& point) const;
    virtual Kdapi::ErrorStatus getEndPoint(KdGePoint3d& point) const;

    virtual Kdapi::ErrorStatus getStartParam(double& param) const;
    virtual Kdapi::ErrorStatus getEndParam(double& param) const;

    /// @return also eInvalidInput for a parameter that is not between the ends
    virtual Kdapi::ErrorStatus getPointAtParam(double param, KdGePoint3d& point) const;
    virtual Kdapi::ErrorStatus getDistAtParam(double param, double& dist) const;

    /// The distance of a point of the curve; 0 where a closed curve starts and ends.
    /// @return also ePointNotOnCurve for a point farther from it than the host's tolerance, or than
    ///         coordinates of that size resolve
    virtual Kdapi::ErrorStatus getDistAtPoint(const KdGePoint3d& point, double& dist) const;

    /// @return also eInvalidInput for a distance below 0 or beyond the length
    virtual Kdapi::ErrorStatus getPointAtDist(double dist, KdGePoint3d& point) const;

    /// The point of the curve nearest to a point.
    /// @param extend  measure to the curve prolonged beyond its ends; lines and arcs only
    virtual Kdapi::ErrorStatus getClosestPointTo(const KdGePoint3d& given, KdGePoint3d& nearest,
                                                 bool extend = false) const;

protected:
    KdDbCurve() = default;

    KORRA_OWN()
    /// The true geometry in the coordinates of the owning block; null when it is degenerate.
    virtual std::unique_ptr<KdGeCurve3d> geometry() const = 0;

    /// The geometry, kept until the curve changes with all that was worked out for it.
    const KdGeCurve3d* keptGeometry() const;

    void contentsMayDiffer() const noexcept override { kept_.reset(); }

    void draw(korra::DrawSink& sink) const override;

private:
    mutable std::unique_ptr<const KdGeCurve3d> kept_;
};

class KdDbLine : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbLine)
public:
    KdDbLine() = default;

    KdDbLine(const KdGePoint3d& start, const KdGePoint3d& end) : start_(start), end_(end) {}

    KdGePoint3d startPoint() const { return start_; }

    KdGePoint3d endPoint() const { return end_; }

    Kdapi::ErrorStatus setStartPoint(const KdGePoint3d& point);
    Kdapi::ErrorStatus setEndPoint(const KdGePoint3d& point);

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    KdGePoint3d start_;
    KdGePoint3d end_;
    korra::PlanarPlace place_;
};

/// An arc in the plane of its normal; angles in radians, counter-clockwise about the normal from
/// the plane's own x axis.
class KdDbArc : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbArc)
public:
    KdDbArc() = default;
    KdDbArc(const KdGePoint3d& center, double radius, double startAngle, double endAngle);
    KdDbArc(const KdGePoint3d& center, const KdGeVector3d& normal, double radius, double startAngle,
            double endAngle);

    /// The centre in the coordinates of the owning block.
    KdGePoint3d center() const;

    double radius() const { return radius_; }

    double startAngle() const { return startAngle_; }

    double endAngle() const { return endAngle_; }

    KdGeVector3d normal() const { return place_.normal(); }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    korra::PlanarPlace place_;
    KdGePoint3d center_; ///< in the entity coordinate system of the normal
    double radius_ = 0.0;
    double startAngle_ = 0.0;
    double endAngle_ = 0.0;
};

class KdDbCircle : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbCircle)
public:
    KdDbCircle() = default;
    KdDbCircle(const KdGePoint3d& center, const KdGeVector3d& normal, double radius);

    /// The centre in the coordinates of the owning block.
    KdGePoint3d center() const;

    double radius() const { return radius_; }

    KdGeVector3d normal() const { return place_.normal(); }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    korra::PlanarPlace place_;
    KdGePoint3d center_; ///< in the entity coordinate system of the normal
    double radius_ = 0.0;
};

class KdDbVertexCurve;

/// A light polyline: vertices in one plane, straight and arc segments.
class KdDbPolyline : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbPolyline)
public:
    /// What a segment is; a point where both its vertices coincide.
    enum SegType : int { kLine = 0, kArc = 1, kCoincident = 2, kPoint = 3, kEmpty = 4 };

    KdDbPolyline() = default;

    explicit KdDbPolyline(unsigned int vertices) { vertices_.reserve(vertices); }

    unsigned int numVerts() const { return static_cast<unsigned int>(vertices_.size()); }

    bool isClosed() const override { return (flags_ & 1) != 0; }

    virtual Kdapi::ErrorStatus setClosed(bool closed);

    /// True where a segment is an arc.
    bool hasBulges() const;

    KdGeVector3d normal() const { return place_.normal(); }

    double elevation() const { return place_.elevation(); }

    /// Inserts a vertex before `index`; numVerts() appends.
    /// @param bulge  tangent of a quarter of the swept angle, positive counter-clockwise
    /// @param startWidth, endWidth  drawing units; negative: none of its own
    /// @param identifier  a number by which others know the vertex
    virtual Kdapi::ErrorStatus addVertexAt(unsigned int index, const KdGePoint2d& point,
                                           double bulge = 0.0, double startWidth = -1.0,
                                           double endWidth = -1.0, int identifier = 0);

    /// A vertex in the coordinates of the owning block. @return eInvalidIndex, nothing written
    Kdapi::ErrorStatus getPointAt(unsigned int index, KdGePoint3d& point) const;
    Kdapi::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;

    /// The kind of the segment that starts at a vertex; kEmpty behind the last one.
    SegType segType(unsigned int index) const;

    /// The segment as a line segment or arc in the coordinates of the owning block.
    /// @return eInvalidIndex; eNotApplicable for a segment of the other kind
    Kdapi::ErrorStatus getLineSegAt(unsigned int index, KdGeLineSeg3d& segment) const;
    Kdapi::ErrorStatus getArcSegAt(unsigned int index, KdGeCircArc3d& arc) const;

    /// The segment in the polyline's own plane.
    Kdapi::ErrorStatus getArcSegAt(unsigned int index, KdGeCircArc2d& arc) const;

    /// True when a point given in the polyline's own plane coordinates lies on a segment, within
    /// the host's tolerance for equal points; `param` is the segment's index plus the part of it
    /// that lies before the point.
    bool onSegAt(unsigned int index, const KdGePoint2d& point, double& param) const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;
    int edgeCount() const override;
    KdDbEntity* newEdge(int marker) const override;
    std::optional<korra::Pieces> newPieces() const override;

    /// A free-standing polyline of the old kind in the same place, without what all entities have.
    std::unique_ptr<KdDbVertexCurve> newOldPolyline() const;

private:
    struct Vertex {
        KdGePoint2d point;
        double bulge = 0.0;
        double startWidth = -1.0;
        double endWidth = -1.0;
        int identifier = 0;
        friend bool operator==(const Vertex&, const Vertex&) = default;
    };

    /// The segment that starts at a vertex, under a map of the plane; null behind the last one.
    std::unique_ptr<KdGeCurve3d> segment(unsigned int index, const KdGeMatrix3d& map) const;
    const Vertex& vertexBehind(unsigned int index) const;
    KdGePoint3d mapped(const Vertex& vertex, const KdGeMatrix3d& map) const;
    unsigned int segmentCount() const;

    std::vector<Vertex> vertices_;
    korra::PlanarPlace place_;
    double constantWidth_ = 0.0;
    short flags_ = 0;
};

/// A vertex of an old-style polyline, an object of its own that the polyline owns.
class KdDbVertex : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbVertex)
public:
    KdDbVertex() = default;

    KdDbVertex(const KdGePoint3d& position, double bulge) : position_(position), bulge_(bulge) {}

    /// In the coordinate system of the polyline: its plane for a 2D one, the block's for a 3D one.
    KdGePoint3d position() const { return position_; }

    double bulge() const { return bulge_; }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    friend class KdDbPolyline;
    friend class KdDbVertexCurve;

    void contentsMayDiffer() const noexcept override;

    /// Follows the plane of the polyline.
    void moveInPlane(const korra::PlaneImage& image);

    KdGePoint3d position_;
    double bulge_ = 0.0;
    double startWidth_ = 0.0;
    double endWidth_ = 0.0;
    double tangent_ = 0.0; ///< of a fitted curve, radians
    short flags_ = 0;
};

/// What the old-style polylines share: vertices that are objects of their own.
class KdDbVertexCurve : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbVertexCurve)
public:
    bool isClosed() const override { return (flags_ & 1) != 0; }

    /// Appends a vertex; the polyline owns it. In a database the vertex gets an id and stays open
    /// for writing.
    Kdapi::ErrorStatus appendVertex(KdDbVertex* vertex);
    Kdapi::ErrorStatus appendVertex(KdDbObjectId& id, KdDbVertex* vertex);

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

protected:
    KdDbVertexCurve() = default;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    /// The vertices in order; a free-standing polyline has its vertices without ids.
    const korra::Owned<KdDbVertex>& vertices() const { return vertices_; }

    void describe(korra::ObjectVisitor& visitor) override;
    void draw(korra::DrawSink& sink) const override;
    int edgeCount() const override;

    KdDbEntity* newEdge(int marker) const override;
    std::optional<korra::Pieces> newPieces() const override;

    /// The segment between two neighbours.
    virtual std::unique_ptr<KdGeCurve3d> segmentGeometry(const KdDbVertex& from,
                                                         const KdDbVertex& to) const = 0;

    /// True where a transform keeps vertices in one plane with their bulges.
    virtual bool isPlanar() const = 0;

    short flags_ = 0;
    korra::PlanarPlace place_;

private:
    friend class KdDbPolyline;
    friend class korra::ObjectAccess;

    /// A vertex with the one that its segment runs to.
    struct Segment {
        const KdDbVertex* from;
        const KdDbVertex* to;
    };

    /// One per pair of neighbours on the curve, the closing one last.
    std::vector<Segment> segments() const;

    korra::Owned<KdDbVertex> vertices_;
    double startWidth_ = 0.0;
    double endWidth_ = 0.0;
    short curveType_ = 0;
};

class KdDb2dPolyline : public KdDbVertexCurve {
    KDRX_DECLARE_MEMBERS(KdDb2dPolyline)
    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> segmentGeometry(const KdDbVertex& from,
                                                 const KdDbVertex& to) const override;

    bool isPlanar() const override { return true; }
};

class KdDb3dPolyline : public KdDbVertexCurve {
    KDRX_DECLARE_MEMBERS(KdDb3dPolyline)
public:
    KdDb3dPolyline();

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> segmentGeometry(const KdDbVertex& from,
                                                 const KdDbVertex& to) const override;

    bool isPlanar() const override { return false; }
};

/// A point; drawn as a dot.
class KdDbPoint : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbPoint)
public:
    KdDbPoint() = default;

    explicit KdDbPoint(const KdGePoint3d& position) : position_(position) {}

    KdGePoint3d position() const { return position_; }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

private:
    KdGePoint3d position_;
    korra::PlanarPlace place_;
};
