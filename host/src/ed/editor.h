#pragma once

#include "ap/documents.h"
#include "ed/command_line.h"
#include "ed/host_settings.h"
#include "ed/input_stream.h"
#include "ed/main_window.h"
#include "ed/prompt_rules.h"
#include "ed/selection_sets.h"
#include "korra/host.h"

#include <string>
#include <string_view>
#include <vector>

namespace korra {

/// What the editor keeps for the whole host.
struct EditorState {
    /// @param openDocuments  outlive the editor
    EditorState(const HostOptions& hostOptions, DocumentManager& openDocuments);
    ~EditorState();
    EditorState(const EditorState&) = delete;
    EditorState& operator=(const EditorState&) = delete;

    const HostOptions options;
    DocumentManager& documents;
    std::vector<std::string> supportFolders; ///< searched before the one beside the program

    ed::CommandLine commandLine;
    ed::InputStream input;
    ed::MainWindow mainWindow{input.typed()};
    ed::SelectionSets selectionSets;

    ed::HostSettings hostSettings;

    ed::PromptRules rules;  ///< for the next prompt
    std::wstring lastInput; ///< the keyword or text that ended the last prompt

    KdGePoint3d cursor;          ///< world coordinates
    bool cursorReported = false; ///< tracking has told it since it last moved
    std::wstring keysToReport;   ///< characters of a text that tracking has not told yet

    bool quitting = false;
};

/// What the editor keeps for one document.
struct EditorDocument {
    KdGePoint3d lastPoint; ///< the point given last, user coordinates
};

} // namespace korra

namespace korra::ed {

/// The editor of the running host; runningEditor() is null when none runs.
EditorState& editor();
EditorState* runningEditor();

/// The current document, and its database; null when there is none.
Document* currentDocument();
KdDbDatabase* currentDatabase();

/// Prints a line of its own.
void printLine(std::wstring_view text);

} // namespace korra::ed
