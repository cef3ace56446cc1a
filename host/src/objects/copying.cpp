#include "objects/kinds.h"
#include "objects/references.h"
#include "objects/snapshot.h"

#include "platform/gate.h"

#include <memory>
#include <utility>

namespace korra {
namespace {

std::unique_ptr<KdDbObject> copyOf(const KdDbObject& source);

/// Gives the copy of an entity copies of the parts that are not erased.
class PartCopying final : public PassingVisitor {
public:
    explicit PartCopying(const OwnedObjects& source) : source_(source) {}

    void owned(OwnedObjects& target) override
    {
        for (const KdDbObject* part : source_.objects()) {
            if (part->isErased())
                continue;
            target.reserveOne();
            target.append(copyOf(*part).release());
        }
    }

private:
    const OwnedObjects& source_;
};

std::unique_ptr<KdDbObject> copyOf(const KdDbObject& source)
{
    const Kind* const kind = kindOf(source);
    if (!kind)
        return nullptr;
    std::unique_ptr<KdDbObject> copy(kind->make());
    giveValues(*copy, valuesOf(source, Extent::contents), Extent::contents);
    ObjectAccess::markCopy(*copy);
    const OwnedObjects* const parts =
        KdDbEntity::cast(&source) ? ObjectAccess::owned(source) : nullptr;
    if (parts) {
        PartCopying copying(*parts);
        copy->describe(copying);
    }
    return copy;
}

/// Gives an object the contents of another one, as its own drawing can hold them, or when that
/// fails leaves it as it was.
void takeContents(KdDbObject& object, const KdDbObject& source)
{
    FieldValues before = valuesOf(object, Extent::contents);
    try {
        giveValues(object, valuesOf(source, Extent::contents), Extent::contents);
        if (KdDbDatabase* const database = object.database()) {
            translateNames(object, *database);
            registerApplications(object, *database);
        }
    } catch (...) {
        giveValues(object, std::move(before), Extent::contents);
        throw;
    }
}

} // namespace
} // namespace korra

Kdapi::ErrorStatus KdDbObject::copyFrom(const KdRxObject* source)
{
    using namespace korra;
    return platform::gate("KdDbObject::copyFrom", objectId())
        .guard(Kdapi::eNotThatKindOfClass, [&] {
            if (!source)
                return Kdapi::eNullObjectPointer;
            if (source->isA() != isA() || !kindOf(*this))
                return Kdapi::eNotThatKindOfClass;
            const auto& object = static_cast<const KdDbObject&>(*source);
            const Kdapi::ErrorStatus refused =
                database() ? checkReferences(object, *database(), ForeignNames::translated)
                           : Kdapi::eOk;
            if (refused != Kdapi::eOk)
                return refused;
            if (const auto status = beginChange())
                return status;
            if (source != this)
                takeContents(*this, object);
            return Kdapi::eOk;
        });
}

KdRxObject* KdDbObject::clone() const
{
    return platform::gate("KdDbObject::clone", objectId()).guard(nullptr, [&]() -> KdRxObject* {
        return korra::copyOf(*this).release();
    });
}
