#pragma once

#include "ap/documents.h"
#include "ed/started_editor.h"

#include <memory>

namespace korra {

/// The running host: what a new start forgets. Modules and commands are kept by host/src/rx.
struct Host {
    DocumentManager documents;

    /// Made when modules can be loaded already; ends when every document is closed.
    std::unique_ptr<ed::StartedEditor> editor;
    int newDrawings = 0; ///< opened so far; their titles are numbered
};

/// The running host; must not be asked for when none runs.
Host& host();

/// Null when no host runs.
Host* runningHost();

} // namespace korra
