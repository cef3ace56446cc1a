#pragma once

#include "kd/db/entity.h"

namespace support {

/// The pieces that an entity explodes into, in the host's order, deleted with this; none where it
/// does not explode.
class Pieces {
public:
    explicit Pieces(const KdDbEntity& entity) { entity.explode(pieces_); }

    ~Pieces()
    {
        for (KdDbEntity* piece : pieces_)
            delete piece;
    }

    Pieces(const Pieces&) = delete;
    Pieces& operator=(const Pieces&) = delete;

    int length() const { return pieces_.length(); }

    KdDbEntity* operator[](int index) const { return pieces_[index]; }

    auto begin() const { return pieces_.begin(); }

    auto end() const { return pieces_.end(); }

private:
    KdArray<KdDbEntity*> pieces_;
};

} // namespace support
