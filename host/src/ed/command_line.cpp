#include "ed/command_line.h"

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

} // namespace korra::ed
