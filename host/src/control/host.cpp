#include "korra/host.h"
#include "control/host_state.h"
#include "objects/object_slots.h"
#include "rx/command_stack.h"
#include "rx/fatal_stop.h"
#include "rx/module_linker.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <utility>

namespace korra {
namespace {

Host* running = nullptr;

/// Passes the coming and going of documents on to the modules.
class ModuleNotices final : public DocumentObserver {
public:
    void documentOpened(Document&) override { rx::sendDocumentOpened(); }

    void documentClosing(Document&) override { rx::sendDocumentClosing(); }
};

void forEachDocument(const std::function<void()>& action)
{
    DocumentManager& manager = host().documents;
    Document* const before = manager.current();
    for (Document* document : manager.documents()) {
        manager.setCurrent(document);
        action();
    }
    manager.setCurrent(before);
}

ModuleNotices& moduleNotices()
{
    static ModuleNotices notices;
    return notices;
}

std::wstring fullPath(const std::string& path)
{
    std::error_code unresolved;
    const std::filesystem::path full = std::filesystem::absolute(path, unresolved);
    return platform::fromUtf8(unresolved ? path : full.lexically_normal().string());
}

/// The title of the next drawing that no file has yet.
std::wstring nextTitle()
{
    return L"Drawing" + std::to_wstring(++host().newDrawings);
}

/// Opens the drawing of a file as a document of another name.
/// @param name  asked for once the drawing is whole
template <class Name>
FileOutcome openAs(const std::string& path, Name name, KdApDocument*& document)
{
    const platform::TurnOf turn(platform::Party::host);
    document = nullptr;
    auto database = std::make_unique<KdDbDatabase>(false);
    FileOutcome outcome = readDrawing(*database, path);
    if (outcome.done)
        document = &host().documents.open(name(), std::move(database));
    return outcome;
}

} // namespace

Host& host()
{
    return *running;
}

Host* runningHost()
{
    return running;
}

bool hostIsRunning()
{
    return running != nullptr;
}

void startHost(const HostOptions& options)
{
    const platform::TurnOf turn(platform::Party::host);
    if (running)
        stopHost();
    ObjectAccess::forgetFreeStanding();
    setRunningSlots(std::make_shared<ObjectSlots>());
    running = new Host;
    rx::forgetFatalStops();
    rx::recordFatalStops(options.recordFatalStops);
    rx::startLinker(forEachDocument);
    running->editor = std::make_unique<ed::StartedEditor>(options, running->documents);
    running->documents.addObserver(&moduleNotices());
}

void stopHost()
{
    const platform::TurnOf turn(platform::Party::host);
    if (!running)
        return;
    rx::stopLinker();
    for (Document* document : running->documents.documents())
        running->documents.close(*document);
    running->editor.reset();
    rx::forgetCommands();
    delete std::exchange(running, nullptr);
    setRunningSlots(nullptr);
}

std::vector<std::wstring> fatalStops()
{
    return rx::recordedFatalStops();
}

void addModuleFolder(const std::string& folder)
{
    rx::addModuleFolder(folder);
}

KdApDocument* newDocument()
{
    const platform::TurnOf turn(platform::Party::host);
    return &host().documents.open(nextTitle(), std::make_unique<KdDbDatabase>());
}

FileOutcome newDocumentFrom(const std::string& templatePath, KdApDocument*& document)
{
    return openAs(templatePath, nextTitle, document);
}

FileOutcome openDocument(const std::string& path, KdApDocument*& document)
{
    return openAs(
        path, [&] { return fullPath(path); }, document);
}

FileOutcome saveDocument(KdApDocument& document, const std::string& path)
{
    const platform::TurnOf turn(platform::Party::host);
    return writeDrawing(*document.database(), path);
}

void closeDocument(KdApDocument& document)
{
    const platform::TurnOf turn(platform::Party::host);
    host().documents.close(static_cast<Document&>(document));
}

} // namespace korra
