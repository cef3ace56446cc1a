#pragma once

#include "kd/db/tables.h"

#include <iterator>
#include <memory>

namespace support {

/// The ids of a symbol table's records in table order, erased ones skipped, for one range-for.
///
/// Empty when the host cannot give an iterator.
class Records {
public:
    explicit Records(const KdDbSymbolTable& table)
    {
        KdDbSymbolTableIterator* walk = nullptr;
        table.newIterator(walk, true, true);
        walk_.reset(walk);
    }

    class Iterator {
    public:
        explicit Iterator(KdDbSymbolTableIterator* walk) : walk_(walk) {}

        KdDbObjectId operator*() const
        {
            KdDbObjectId id;
            walk_->getRecordId(id);
            return id;
        }

        Iterator& operator++()
        {
            walk_->step(true, true);
            return *this;
        }

        bool operator==(std::default_sentinel_t) const { return !walk_ || walk_->done(); }

    private:
        KdDbSymbolTableIterator* walk_;
    };

    Iterator begin() const { return Iterator(walk_.get()); }

    std::default_sentinel_t end() const { return {}; }

private:
    std::unique_ptr<KdDbSymbolTableIterator> walk_;
};

inline Records records(const KdDbSymbolTable& table)
{
    return Records(table);
}

} // namespace support
