#include "ed/editor.h"

#include "ed/host_commands.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/input.h"
#include "platform/text.h"

namespace korra {
namespace {

EditorState* running = nullptr;

/// Readies each document that is opened for the editor.
class DocumentPreparer final : public DocumentObserver {
public:
    void documentOpened(Document& document) override
    {
        document.editor = std::make_shared<EditorDocument>();
        ed::fitNewView(*document.database());
    }

    void documentClosing(Document&) override {}
};

} // namespace

EditorState::EditorState(const HostOptions& hostOptions, DocumentManager& openDocuments)
    : options(hostOptions), documents(openDocuments), observer(std::make_unique<DocumentPreparer>())
{
    running = this;
    documents.addObserver(observer.get());
    ed::registerHostCommands();
    platform::releaseKeys();
}

EditorState::~EditorState()
{
    platform::releaseKeys();
    documents.removeObserver(observer.get());
    running = nullptr;
}

} // namespace korra

namespace korra::ed {

EditorState& editor()
{
    return *running;
}

EditorState* runningEditor()
{
    return running;
}

Document* currentDocument()
{
    const DocumentManager* const documents = documentManager();
    return documents ? documents->current() : nullptr;
}

KdDbDatabase* currentDatabase()
{
    const Document* const document = currentDocument();
    return document ? document->database() : nullptr;
}

} // namespace korra::ed
