#pragma once

#include "kd/db/curves.h"

// Entities that are kept as their files have them: the host tells their classes apart, saves them
// byte for byte, and shows nothing of them. They come from files alone.

namespace korra {

/// What all of them are; a class of the program, none of the interface.
class KeptEntity : public KdDbEntity {
protected:
    KeptEntity() = default;

    KORRA_OWN()

    void draw(DrawSink&) const override {}
};

} // namespace korra

/// A grid of vertices.
class KdDbPolygonMesh : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbPolygonMesh)
    KORRA_OWN()
    KdDbPolygonMesh() = default;
};

/// Faces over vertices that they share.
class KdDbPolyFaceMesh : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbPolyFaceMesh)
    KORRA_OWN()
    KdDbPolyFaceMesh() = default;
};

/// A solid of a modeller.
class KdDb3dSolid : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDb3dSolid)
    KORRA_OWN()
    KdDb3dSolid() = default;
};

/// A body of a modeller, closed or not.
class KdDbBody : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbBody)
    KORRA_OWN()
    KdDbBody() = default;
};

/// A filled or patterned area.
class KdDbHatch : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbHatch)
    KORRA_OWN()
    KdDbHatch() = default;
};

/// The end of the parts of an entity, where it stands alone.
class KdDbSequenceEnd : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbSequenceEnd)
    KORRA_OWN()
    KdDbSequenceEnd() = default;
};

/// Parallel lines drawn as one.
class KdDbMline : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbMline)
    KORRA_OWN()
    KdDbMline() = default;
};

/// A frame of tolerances.
class KdDbFcf : public korra::KeptEntity {
    KDRX_DECLARE_MEMBERS(KdDbFcf)
    KORRA_OWN()
    KdDbFcf() = default;
};

/// A line with an arrow that leads to an annotation.
class KdDbLeader : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbLeader)
    KORRA_OWN()
    KdDbLeader() = default;

    std::unique_ptr<KdGeCurve3d> geometry() const override { return nullptr; }
};
