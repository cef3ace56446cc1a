#pragma once

#include "ap/documents.h"
#include "db/object_slots.h"
#include "kd/db/database.h"
#include "korra/host.h"

#include <memory>
#include <string>
#include <vector>

namespace korra {

/// Input, command line, system variables and views of the host, kept by host/src/ed.
struct EditorState;

/// Made when the host starts, while `host()` is there already: the editor may add observers to its
/// documents. It ends after every document is closed.
std::shared_ptr<EditorState> makeEditorState();

/// The running host: what a new start forgets. Modules and commands are kept by host/src/rx.
struct Host {
    HostOptions options;
    std::shared_ptr<ObjectSlots> slots = std::make_shared<ObjectSlots>();
    KdDbHostApplicationServices services;
    std::shared_ptr<EditorState> editor;
    DocumentManager documents;
    int newDrawings = 0;                     ///< opened so far; their titles are numbered
    std::vector<std::string> supportFolders; ///< searched before the one beside the program
};

/// The running host; must not be asked for when none runs.
Host& host();

/// Null when no host runs.
Host* runningHost();

} // namespace korra
