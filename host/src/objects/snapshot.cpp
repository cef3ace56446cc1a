#include "objects/snapshot.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <type_traits>
#include <utility>

namespace korra {
namespace {

/// Most entities have about as many.
constexpr std::size_t kUsualBytes = 192;

template <class T>
void noteValue(FieldValues& values, const T& value)
{
    if constexpr (std::is_trivially_copyable_v<T>) {
        const auto bytes = std::as_bytes(std::span(&value, 1));
        values.plain.insert(values.plain.end(), bytes.begin(), bytes.end());
    } else {
        noteValue(values, value.empty());
        if (!value.empty())
            values.longs.emplace_back(value);
    }
}

/// Gives values back in the order in which they were noted.
class ValueSource {
public:
    explicit ValueSource(FieldValues values) : values_(std::move(values)) {}

    template <class T>
    void give(T& value)
    {
        if constexpr (std::is_trivially_copyable_v<T>) {
            std::memcpy(&value, values_.plain.data() + nextPlain_, sizeof value);
            nextPlain_ += sizeof value;
        } else {
            bool isEmpty = true;
            give(isEmpty);
            value = isEmpty ? T() : std::move(std::get<T>(values_.longs[nextLong_++]));
        }
    }

private:
    FieldValues values_;
    std::size_t nextPlain_ = 0;
    std::size_t nextLong_ = 0;
};

/// Meets every value in one way, whatever its kind.
template <class Each>
class ValueVisitor final : public ObjectVisitor {
public:
    ValueVisitor(Each& each, Extent extent) : each_(each), extent_(extent) {}

    void real(int, double& value) override { each_(value); }

    void real(int, double& value, double) override { each_(value); }

    void angle(int, double& value) override { each_(value); }

    void angle(int, double& value, double) override { each_(value); }

    void text(int, std::wstring& value) override { each_(value); }

    void text(int, std::wstring& value, const wchar_t*) override { each_(value); }

    void longText(int, int, std::wstring& value) override { each_(value); }

    void point(int, KdGePoint3d& value) override { each_(value); }

    void point(int, KdGePoint3d& value, const KdGePoint3d&) override { each_(value); }

    void vector(int, KdGeVector3d& value, const KdGeVector3d&) override { each_(value); }

    void point(int, KdGePoint2d& value) override { each_(value); }

    void handle(int, KdDbHandle& value) override { each_(value); }

    void color(int, KdCmColor& value) override { each_(value); }

    void layerColor(int, KdCmColor& value, bool& off) override
    {
        each_(value);
        unsaved(off);
    }

    void derived(int, long long) override {}

    void behindMarker(int, const char*) override {}

    void extendedData(std::vector<TypedValue>& values) override { each_(values); }

    void unsaved(bool& value) override
    {
        long long number = value;
        each_(number);
        value = number != 0;
    }

    void unsaved(KdGeMatrix3d& value) override { each_(value); }

    void source(std::string_view& tags) override
    {
        if (extent_ == Extent::everything)
            each_(tags);
    }

    void name(int, KdDbObjectId& value, TableKind, Reference) override { each_(value); }

    void reference(int, KdDbObjectId& value, Reference, const KdRxClass*) override { each_(value); }

    void owner(KdDbObjectId& value) override
    {
        if (extent_ == Extent::everything)
            each_(value);
    }

    void extensionDictionary(KdDbObjectId& value) override
    {
        if (extent_ == Extent::everything)
            each_(value);
    }

    void owned(OwnedObjects& objects) override
    {
        if (extent_ != Extent::everything)
            return;
        OwnedObjects::Objects list = objects.objects();
        each_(list);
        if (list != objects.objects())
            objects.replace(std::move(list));
    }

protected:
    void wholeNumber(int, long long& value) override { each_(value); }

    void wholeNumber(int, long long& value, long long) override { each_(value); }

    std::size_t beginList(int, std::size_t count) override
    {
        auto number = static_cast<long long>(count);
        each_(number);
        return static_cast<std::size_t>(number);
    }

    void beginElement() override {}

    void endList() override {}

private:
    Each& each_;
    Extent extent_;
};

} // namespace

FieldValues valuesOf(const KdDbObject& object, Extent extent)
{
    FieldValues values;
    values.plain.reserve(kUsualBytes);
    const auto note = [&](auto& value) { noteValue(values, value); };
    ValueVisitor visitor(note, extent);
    // Visitors share one form for reading and writing; this one leaves the object as it is.
    const_cast<KdDbObject&>(object).describe(visitor);
    return values;
}

void giveValues(KdDbObject& object, FieldValues values, Extent extent)
{
    ValueSource source(std::move(values));
    const auto give = [&](auto& value) { source.give(value); };
    ValueVisitor visitor(give, extent);
    object.describe(visitor);
    ObjectAccess::namesMayDiffer(object);
}

} // namespace korra
