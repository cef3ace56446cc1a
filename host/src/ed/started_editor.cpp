#include "ed/started_editor.h"

#include "ed/host_commands.h"
#include "ed/views.h"
#include "platform/input.h"

namespace korra::ed {

void StartedEditor::DocumentPreparer::documentOpened(Document& document)
{
    document.editor = std::make_shared<EditorDocument>();
    fitNewView(*document.database());
}

StartedEditor::StartedEditor(const HostOptions& options, DocumentManager& documents)
    : state_(options, documents)
{
    documents.addObserver(&preparer_);
    registerHostCommands();
    platform::releaseKeys();
}

StartedEditor::~StartedEditor()
{
    platform::releaseKeys();
    state_.documents.removeObserver(&preparer_);
}

} // namespace korra::ed
