#include "korra/console.h"

#include "ed/commands.h"
#include "ed/editor.h"
#include "ed/script_lines.h"
#include "ed/system_variables.h"
#include "platform/gate.h"
#include "platform/text.h"

namespace korra {

void setCommandLineOutput(std::function<void(const std::string& utf8)> sink)
{
    ed::editor().commandLine.setOutput(std::move(sink));
}

std::string takePrintedText()
{
    const platform::TurnOf turn(platform::Party::host);
    EditorState* const editor = ed::runningEditor();
    return editor ? editor->commandLine.take() : std::string();
}

void queueInput(const std::string& utf8Line)
{
    const platform::TurnOf turn(platform::Party::host);
    ed::editor().input.queue().add(ed::readInputLine(utf8Line));
}

void setInputSource(std::function<std::optional<std::string>()> source, InputEcho echo)
{
    ed::InputStream& input = ed::editor().input;
    input.setSource(std::make_unique<ed::LineSource>(std::move(source), echo, input.typed()));
}

bool runCommands()
{
    const platform::TurnOf turn(platform::Party::host);
    return ed::runCommands();
}

bool runCommand(const std::string& utf8Name)
{
    const platform::TurnOf turn(platform::Party::host);
    return ed::runCommand(platform::fromUtf8(utf8Name));
}

bool setVariable(const std::string& utf8Name, const std::string& utf8Value)
{
    const platform::TurnOf turn(platform::Party::host);
    const ed::SystemVariable* const variable = ed::findVariable(platform::fromUtf8(utf8Name));
    return variable && ed::setVariable(*variable, platform::fromUtf8(utf8Value));
}

std::string mainWindowCaption()
{
    return platform::toUtf8(ed::editor().mainWindow.caption);
}

} // namespace korra
