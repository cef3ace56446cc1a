#include "pick_support.h"

#include "support/opened.h"

#include <windows.h>

using support::Opened;

namespace pick {

KdDbObjectId idOf(const kds_name name)
{
    KdDbObjectId id;
    kddbGetObjectId(id, name);
    return id;
}

const resbuf* outermost(const resbuf* chain)
{
    while (chain && chain->rbnext)
        chain = chain->rbnext;
    return chain;
}

const resbuf* topLevel(const resbuf* chain)
{
    const resbuf* const last = outermost(chain);
    if (!last || !Opened<KdDbViewport>(idOf(last->resval.rlname), KdDb::kForRead))
        return last;
    const resbuf* inner = nullptr;
    for (; chain != last; chain = chain->rbnext)
        inner = chain;
    return inner;
}

bool isViewport(KdDbObjectId id)
{
    const KdRxClass* const description = id.objectClass();
    return description && description->isDerivedFrom(KdDbViewport::desc());
}

bool isKeyHeld(int key)
{
    return GetAsyncKeyState(key) < 0;
}

namespace {

bool areButtonsSwapped()
{
    return GetSystemMetrics(SM_MOUSEPRESENT) != 0 && GetSystemMetrics(SM_SWAPBUTTON) != 0;
}

} // namespace

bool isPrimaryButtonHeld()
{
    return isKeyHeld(areButtonsSwapped() ? VK_RBUTTON : VK_LBUTTON);
}

bool isSecondaryButtonHeld()
{
    return isKeyHeld(areButtonsSwapped() ? VK_LBUTTON : VK_RBUTTON);
}

} // namespace pick
