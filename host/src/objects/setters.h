#pragma once

#include "kd/db/entity.h"
#include "objects/trace_forms.h"
#include "platform/gate.h"

#include <utility>

/// The bodies that setters share: each passes the gate under its own name.
///
/// The new value is made before anything changes, so that a failure leaves the object as it was.

template <class Field, class Value>
Kdapi::ErrorStatus KdDbObject::set(const char* operation, Field& field, const Value& value)
{
    return setIf(operation, true, field, value);
}

template <class Field, class Value>
Kdapi::ErrorStatus KdDbObject::setIf(const char* operation, bool isValid, Field& field,
                                     const Value& value, Kdapi::ErrorStatus refusal)
{
    return platform::gate(operation, objectId(), value).guard(Kdapi::eNotOpenForWrite, [&] {
        if (!isValid)
            return refusal;
        Field taken(value);
        const Kdapi::ErrorStatus status = beginChange();
        if (status == Kdapi::eOk)
            field = std::move(taken);
        return status;
    });
}

template <class Body>
Kdapi::ErrorStatus KdDbEntity::transform(const KdGeMatrix3d& matrix, Takes taken, Body body)
{
    return platform::gate("KdDbEntity::transformBy", objectId()).guard(Kdapi::eInvalidInput, [&] {
        const Kdapi::ErrorStatus status = beginTransform(matrix, taken);
        return status == Kdapi::eOk ? body() : status;
    });
}
