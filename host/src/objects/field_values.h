#pragma once

#include "objects/object_visitor.h"

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

class KdDbObject;

namespace korra {

/// The value of one stored field.
using FieldValue = std::variant<long long, double, std::wstring, KdGePoint3d, KdGeVector3d,
                                KdGePoint2d, KdDbObjectId, KdDbHandle, KdCmColor>;

/// The stored fields of an object in the order in which it names them; a list begins with the count
/// of its elements.
using FieldValues = std::vector<FieldValue>;

/// Notes every stored field; the object stays as it is.
class FieldRecorder final : public ObjectVisitor {
public:
    FieldValues take() { return std::move(values_); }

    void real(int, double& value) override { values_.emplace_back(value); }

    void real(int, double& value, double) override { values_.emplace_back(value); }

    void angle(int, double& value) override { values_.emplace_back(value); }

    void angle(int, double& value, double) override { values_.emplace_back(value); }

    void text(int, std::wstring& value) override { values_.emplace_back(value); }

    void text(int, std::wstring& value, const wchar_t*) override { values_.emplace_back(value); }

    void longText(int, int, std::wstring& value) override { values_.emplace_back(value); }

    void point(int, KdGePoint3d& value) override { values_.emplace_back(value); }

    void point(int, KdGePoint3d& value, const KdGePoint3d&) override
    {
        values_.emplace_back(value);
    }

    void vector(int, KdGeVector3d& value, const KdGeVector3d&) override
    {
        values_.emplace_back(value);
    }

    void point(int, KdGePoint2d& value) override { values_.emplace_back(value); }

    void name(int, KdDbObjectId& value, TableKind) override { values_.emplace_back(value); }

    void handle(int, KdDbObjectId& value) override { values_.emplace_back(value); }

    void handle(int, KdDbHandle& value) override { values_.emplace_back(value); }

    void color(int, KdCmColor& value) override { values_.emplace_back(value); }

    void layerColor(int, KdCmColor& value, bool& off) override
    {
        values_.emplace_back(value);
        values_.emplace_back(static_cast<long long>(off));
    }

    void derived(int, long long) override {}

    void behindMarker(int) override {}

protected:
    void wholeNumber(int, long long& value) override { values_.emplace_back(value); }

    void wholeNumber(int, long long& value, long long) override { values_.emplace_back(value); }

    std::size_t beginList(int, std::size_t count) override
    {
        values_.emplace_back(static_cast<long long>(count));
        return count;
    }

    void beginElement() override {}

    void endList() override {}

private:
    FieldValues values_;
};

/// Gives an object the fields that a recorder noted of another one of the same class.
class FieldPlayer final : public ObjectVisitor {
public:
    explicit FieldPlayer(FieldValues values) : values_(std::move(values)) {}

    void real(int, double& value) override { give(value); }

    void real(int, double& value, double) override { give(value); }

    void angle(int, double& value) override { give(value); }

    void angle(int, double& value, double) override { give(value); }

    void text(int, std::wstring& value) override { give(value); }

    void text(int, std::wstring& value, const wchar_t*) override { give(value); }

    void longText(int, int, std::wstring& value) override { give(value); }

    void point(int, KdGePoint3d& value) override { give(value); }

    void point(int, KdGePoint3d& value, const KdGePoint3d&) override { give(value); }

    void vector(int, KdGeVector3d& value, const KdGeVector3d&) override { give(value); }

    void point(int, KdGePoint2d& value) override { give(value); }

    void name(int, KdDbObjectId& value, TableKind) override { give(value); }

    void handle(int, KdDbObjectId& value) override { give(value); }

    void handle(int, KdDbHandle& value) override { give(value); }

    void color(int, KdCmColor& value) override { give(value); }

    void layerColor(int, KdCmColor& value, bool& off) override
    {
        give(value);
        long long isOff = 0;
        give(isOff);
        off = isOff != 0;
    }

    void derived(int, long long) override {}

    void behindMarker(int) override {}

protected:
    void wholeNumber(int, long long& value) override { give(value); }

    void wholeNumber(int, long long& value, long long) override { give(value); }

    std::size_t beginList(int, std::size_t) override
    {
        long long count = 0;
        give(count);
        return static_cast<std::size_t>(count);
    }

    void beginElement() override {}

    void endList() override {}

private:
    template <class T>
    void give(T& value)
    {
        value = std::move(std::get<T>(values_[next_++]));
    }

    FieldValues values_;
    std::size_t next_ = 0;
};

/// The stored fields of an object.
FieldValues fieldValues(const KdDbObject& object);

/// Gives an object the fields of another one of the same class.
void copyFields(const KdDbObject& source, KdDbObject& target);

/// True for objects of one class whose stored fields are the same.
bool haveSameFields(const KdDbObject& left, const KdDbObject& right);

} // namespace korra
