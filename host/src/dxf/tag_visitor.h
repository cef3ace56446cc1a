#pragma once

#include "objects/object_visitor.h"

namespace korra {

/// What readers and writers of tags pass by: the place in a file tells who owns what.
class TagVisitor : public ObjectVisitor {
public:
    void owner(KdDbObjectId&) final {}

    void owned(OwnedObjects&) final {}

    void source(std::string_view&) final {}

    void unsaved(bool&) final {}

    void unsaved(KdGeMatrix3d&) final {}
};

} // namespace korra
