#include "ed/editor.h"

#include "platform/text.h"

namespace korra {
namespace {

EditorState* running = nullptr;

} // namespace

EditorState::EditorState(const HostOptions& hostOptions, DocumentManager& openDocuments)
    : options(hostOptions), documents(openDocuments)
{
    running = this;
}

EditorState::~EditorState()
{
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

void printLine(std::wstring_view text)
{
    CommandLine& line = editor().commandLine;
    line.freshLine();
    line.print(platform::toUtf8(text) + '\n');
}

} // namespace korra::ed
