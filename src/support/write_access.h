#pragma once

#include "kd/db/object.h"

namespace support {

/// Makes an open object writable for the length of a scope.
///
/// An object that is open for reading is upgraded now and downgraded at the end; one that can be
/// written already stays as it is.
class WriteAccess {
public:
    explicit WriteAccess(KdDbObject& object)
        : object_(object), upgraded_(!object.isWriteEnabled() && object.upgradeOpen() == Kdapi::eOk)
    {
    }

    ~WriteAccess()
    {
        if (upgraded_)
            object_.downgradeOpen();
    }

    WriteAccess(const WriteAccess&) = delete;
    WriteAccess& operator=(const WriteAccess&) = delete;

private:
    KdDbObject& object_;
    bool upgraded_;
};

} // namespace support
