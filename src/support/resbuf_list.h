#pragma once

#include "kd/resbuf.h"

namespace support {

/// A list of result buffers that is freed at the end of a scope, with the strings it holds.
class ResbufList {
public:
    ResbufList() = default;

    /// Takes a list over; null is the empty list.
    explicit ResbufList(resbuf* list) : head_(list) {}

    ~ResbufList() { kdutRelRb(head_); }

    ResbufList(const ResbufList&) = delete;
    ResbufList& operator=(const ResbufList&) = delete;

    bool isEmpty() const { return head_ == nullptr; }

    resbuf* get() const { return head_; }

    /// The link to the first node: where a host operation puts a new list, and where unlinking
    /// begins.
    resbuf** link() { return &head_; }

private:
    resbuf* head_ = nullptr;
};

} // namespace support
