#include "ed/command_line.h"

#include "ed/editor.h"
#include "kd/ed.h"
#include "korra/console.h"
#include "platform/format.h"
#include "platform/gate.h"
#include "platform/text.h"

namespace korra::ed {

void CommandLine::put(std::string_view text)
{
    if (text.empty())
        return;
    kept_ += text;
    if (output_)
        output_(std::string(text));
    atLineStart_ = text.back() == '\n';
    endedByInput_ = false;
}

void CommandLine::print(std::string_view text)
{
    if (endedByInput_ && text.starts_with('\n'))
        text.remove_prefix(1);
    put(text);
}

void CommandLine::freshLine()
{
    if (!atLineStart_)
        put("\n");
}

void CommandLine::echo(std::string_view input)
{
    put(std::string(input) + '\n');
    endedByInput_ = true;
}

void CommandLine::lineEndedByUser()
{
    atLineStart_ = true;
    endedByInput_ = true;
}

void printLine(std::wstring_view text)
{
    CommandLine& line = editor().commandLine;
    line.freshLine();
    line.print(platform::toUtf8(text) + '\n');
}

} // namespace korra::ed

void korra::setCommandLineOutput(std::function<void(const std::string& utf8)> sink)
{
    ed::editor().commandLine.setOutput(std::move(sink));
}

std::string korra::takePrintedText()
{
    EditorState* const editor = ed::runningEditor();
    return editor ? editor->commandLine.take() : std::string();
}

int kdutPrintf(const wchar_t* format, ...)
{
    if (!format)
        return RTERROR;
    std::va_list arguments;
    va_start(arguments, format);
    const std::wstring text = platform::formatList(format, arguments);
    va_end(arguments);

    platform::note("kdutPrintf", text);
    korra::EditorState* const editor = korra::ed::runningEditor();
    if (!editor)
        return RTERROR;
    editor->commandLine.print(platform::toUtf8(text));
    return RTNORM;
}
