#include "ed/commands.h"

#include "ed/editor.h"
#include "ed/prompts.h"
#include "kd/ed.h"
#include "platform/faults.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "rx/command_stack.h"
#include "rx/list_functions.h"

#include <exception>

namespace korra::ed {
namespace {

/// The current document locked for the length of a command.
class CommandLock {
public:
    explicit CommandLock(const rx::Command& command)
        : document_(currentDocument()),
          status_(editor().documents.lockDocument(document_, KdAp::kWrite,
                                                  command.globalName.c_str(),
                                                  command.localName.c_str(), false))
    {
    }

    ~CommandLock()
    {
        if (status_ == Kdapi::eOk)
            editor().documents.unlockDocument(document_);
    }

    CommandLock(const CommandLock&) = delete;
    CommandLock& operator=(const CommandLock&) = delete;

    Kdapi::ErrorStatus status() const { return status_; }

private:
    KdApDocument* document_;
    Kdapi::ErrorStatus status_;
};

void sayStopped(std::wstring_view name, const std::string& why)
{
    printLine(std::wstring(name) + L" was stopped by an exception: " + platform::fromUtf8(why));
}

/// Calls a command's function; an exception that leaves it ends the command only.
void call(std::wstring_view name, KdRxFunctionPtr function)
{
    try {
        const platform::TurnOf turn(platform::Party::module);
        function();
    } catch (const platform::OrderedException& exception) {
        sayStopped(name, exception.operation());
    } catch (const std::exception& exception) {
        sayStopped(name, exception.what());
    } catch (...) {
        sayStopped(name, "of unknown kind");
    }
}

void run(const rx::Command& registered)
{
    // The command may take itself off the stack while it runs.
    const rx::Command command = registered;
    const CommandLock lock(command);
    if (lock.status() != Kdapi::eOk) {
        printLine(command.globalName + L" cannot lock the drawing: " +
                  kdapiErrorStatusText(lock.status()));
        return;
    }
    call(command.globalName, command.function);
    editor().rules = {};
    editor().keysToReport.clear();
}

/// A list-processing function: `(name)`, or by the bare name where it is defined with "C:".
bool runFunction(std::wstring_view name)
{
    if (name.starts_with(L'(') && name.ends_with(L')'))
        return rx::invokeFunction(name.substr(1, name.size() - 2));
    return rx::invokeFunction(L"C:" + std::wstring(name));
}

} // namespace

bool runCommands()
{
    const platform::TurnOf turn(platform::Party::host);
    bool allKnown = true;
    editor().quitting = false;
    while (!editor().quitting) {
        editor().commandLine.freshLine();
        const InputEvent event = ask(L"Command: ");
        if (event.is<EndEvent>())
            break;
        if (const std::wstring* const name = typedText(event))
            allKnown = runCommand(*name) && allKnown;
    }
    editor().commandLine.freshLine();
    return allKnown;
}

bool runCommand(std::wstring_view typed)
{
    std::wstring_view name = platform::trimmedLeft(platform::trimmedRight(typed));
    while (name.starts_with(L'_') || name.starts_with(L'.'))
        name.remove_prefix(1);
    if (const rx::Command* const command = rx::findCommand(name)) {
        run(*command);
        return true;
    }
    if (runFunction(name))
        return true;
    printLine(L"Unknown command \"" + std::wstring(typed) + L"\".");
    return false;
}

} // namespace korra::ed
