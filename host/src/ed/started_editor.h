#pragma once

#include "ed/editor.h"

namespace korra::ed {

/// The editor of the running host from its start to its end: it readies each document that is
/// opened, and the host's own commands can be called.
class StartedEditor {
public:
    /// @param documents  outlive the editor
    StartedEditor(const HostOptions& options, DocumentManager& documents);
    ~StartedEditor();
    StartedEditor(const StartedEditor&) = delete;
    StartedEditor& operator=(const StartedEditor&) = delete;

private:
    class DocumentPreparer final : public DocumentObserver {
        void documentOpened(Document& document) override;

        void documentClosing(Document&) override {}
    };

    EditorState state_;
    DocumentPreparer preparer_;
};

} // namespace korra::ed
