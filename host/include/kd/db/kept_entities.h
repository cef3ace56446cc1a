#pragma once

#include "kd/db/entity.h"

// Entities that are kept as their files have them: the host tells their classes apart, saves them
// byte for byte, and shows nothing of them. They come from files alone.

/// A grid of vertices.
class KdDbPolygonMesh : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbPolygonMesh)
    KORRA_OWN()
    KdDbPolygonMesh() = default;

    void draw(korra::DrawSink&) const override {}
};

/// Faces over vertices that they share.
class KdDbPolyFaceMesh : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbPolyFaceMesh)
    KORRA_OWN()
    KdDbPolyFaceMesh() = default;

    void draw(korra::DrawSink&) const override {}
};

/// A solid of a modeller.
class KdDb3dSolid : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDb3dSolid)
    KORRA_OWN()
    KdDb3dSolid() = default;

    void draw(korra::DrawSink&) const override {}
};

/// A body of a modeller, closed or not.
class KdDbBody : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbBody)
    KORRA_OWN()
    KdDbBody() = default;

    void draw(korra::DrawSink&) const override {}
};

/// A filled or patterned area.
class KdDbHatch : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbHatch)
    KORRA_OWN()
    KdDbHatch() = default;

    void draw(korra::DrawSink&) const override {}
};

/// The end of the parts of an entity, where it stands alone.
class KdDbSequenceEnd : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbSequenceEnd)
    KORRA_OWN()
    KdDbSequenceEnd() = default;

    void draw(korra::DrawSink&) const override {}
};

/// Parallel lines drawn as one.
class KdDbMline : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbMline)
    KORRA_OWN()
    KdDbMline() = default;

    void draw(korra::DrawSink&) const override {}
};

/// A frame of tolerances.
class KdDbFcf : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbFcf)
    KORRA_OWN()
    KdDbFcf() = default;

    void draw(korra::DrawSink&) const override {}
};
