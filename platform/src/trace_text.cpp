#include "platform/trace_text.h"

#include "platform/text.h"

#include <charconv>
#include <iterator>

std::string platform::traceText(std::wstring_view text)
{
    return traceText(std::string_view(toUtf8(text)));
}

std::string platform::traceText(std::string_view text)
{
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '\n')
            quoted += "\\n";
        else
            quoted += character;
    }
    return quoted + '"';
}

std::string platform::traceText(double value)
{
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return {digits, end};
}

std::string platform::traceText(long long value)
{
    return std::to_string(value);
}

std::string platform::traceTextOfPointer(bool there)
{
    return there ? "object" : "null";
}
