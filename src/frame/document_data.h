#pragma once

#include "kd/ap.h"

#include <map>

/// What this library keeps for one document: nothing.
struct CDocData {};

/// Keeps one record per document and drops it when the document is gone.
template <class Record>
class KdApDataManager : public KdApDocManagerReactor {
public:
    KdApDataManager()
    {
        if (KdApDocManager* const documents = kdDocManagerPtr())
            documents->addReactor(this);
    }

    ~KdApDataManager() override
    {
        if (KdApDocManager* const documents = kdDocManagerPtr())
            documents->removeReactor(this);
    }

    KdApDataManager(const KdApDataManager&) = delete;
    KdApDataManager& operator=(const KdApDataManager&) = delete;

    void documentDestroyed(const KdApDocument* document) override
    {
        const auto range = records_.equal_range(document);
        records_.erase(range.first, range.second);
    }

private:
    std::map<const KdApDocument*, Record> records_;
};
