#pragma once

#include "kd/db/entity.h"

#include <memory>
#include <vector>

namespace support {

/// The pieces that an entity explodes into, in the host's order, deleted with this; none where it
/// does not explode.
class Pieces {
public:
    explicit Pieces(const KdDbEntity& entity)
    {
        KdArray<KdDbEntity*> exploded;
        entity.explode(exploded);
        for (KdDbEntity* piece : exploded)
            pieces_.emplace_back(piece);
    }

    std::size_t size() const { return pieces_.size(); }

    KdDbEntity* operator[](std::size_t index) const { return pieces_[index].get(); }

    auto begin() const { return pieces_.begin(); }

    auto end() const { return pieces_.end(); }

private:
    std::vector<std::unique_ptr<KdDbEntity>> pieces_;
};

} // namespace support
