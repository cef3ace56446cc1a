#pragma once

#include "ed/input_sources.h"

#include <memory>

namespace korra::ed {

/// What the user does, in order: what is queued first, then what the source gives.
class InputStream {
public:
    /// For what is there already.
    EventQueue& queue() { return queue_; }

    TypedCharacters& typed() { return typed_; }

    /// Where events come from while none is queued; null: from nowhere.
    void setSource(std::unique_ptr<InputSource> source) { source_ = std::move(source); }

    /// Takes the next event; the keys and buttons that it was made with count as held until the
    /// next one is taken.
    InputEvent take();

    /// True when the next event is there already, or can be had without asking anybody, and is a
    /// move of the cursor.
    bool isMoveNext();

private:
    enum class Waiting { allowed, avoided };

    /// Has the next event ready, where there is one.
    void lookAhead(Waiting waiting);

    EventQueue queue_;
    TypedCharacters typed_{queue_};
    std::unique_ptr<InputSource> source_;
    std::optional<InputEvent> ahead_;
};

} // namespace korra::ed
