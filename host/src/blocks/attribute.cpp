#include "entities/text_layout.h"
#include "kd/db/text.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"

KDRX_DEFINE_MEMBERS(KdDbAttributeDefinition, KdDbText)
KDRX_DEFINE_MEMBERS(KdDbAttribute, KdDbText)

KdDbAttributeDefinition::KdDbAttributeDefinition(const KdGePoint3d& position, const wchar_t* text,
                                                 const wchar_t* tag, const wchar_t* prompt,
                                                 double height)
    : KdDbText(position, text, height), tag_(tag ? tag : L""), prompt_(prompt ? prompt : L"")
{
}

/// A constant one shows its text, as a part of the block; the others show where their tag is.
void KdDbAttributeDefinition::draw(korra::DrawSink& sink) const
{
    if (isConstant())
        KdDbText::draw(sink);
    else if (!tag_.empty())
        sink.text(korra::layOutText(*this, tag_));
}

void KdDbAttributeDefinition::describe(korra::ObjectVisitor& visitor)
{
    textFields(visitor, "AttributeDefinition", 74);
    visitor.text(3, prompt_);
    visitor.text(2, tag_);
    visitor.integer(70, attributeFlags_);
    visitor.integer(73, fieldLength_, 0);
}

KdDbAttribute::KdDbAttribute(const KdGePoint3d& position, const wchar_t* text, const wchar_t* tag,
                             double height)
    : KdDbText(position, text, height), tag_(tag ? tag : L"")
{
}

void KdDbAttribute::draw(korra::DrawSink& sink) const
{
    if (!isInvisible())
        KdDbText::draw(sink);
}

void KdDbAttribute::describe(korra::ObjectVisitor& visitor)
{
    textFields(visitor, "Attribute", 74);
    visitor.text(2, tag_);
    visitor.integer(70, attributeFlags_);
    visitor.integer(73, fieldLength_, 0);
}
