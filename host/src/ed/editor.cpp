#include "ed/editor.h"

#include "ed/host_commands.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/input.h"
#include "platform/text.h"

namespace korra {
namespace {

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

EditorState::EditorState() : observer(std::make_unique<DocumentPreparer>())
{
    host().documents.addObserver(observer.get());
    ed::registerHostCommands();
    platform::releaseKeys();
}

EditorState::~EditorState()
{
    platform::releaseKeys();
}

std::shared_ptr<EditorState> makeEditorState()
{
    return std::make_shared<EditorState>();
}

} // namespace korra

namespace korra::ed {

EditorState& editor()
{
    return *host().editor;
}

EditorState* runningEditor()
{
    Host* const running = runningHost();
    return running ? running->editor.get() : nullptr;
}

Document* currentDocument()
{
    Host* const running = runningHost();
    return running ? running->documents.current() : nullptr;
}

KdDbDatabase* currentDatabase()
{
    const Document* const document = currentDocument();
    return document ? document->database() : nullptr;
}

} // namespace korra::ed
