#include "options.h"

#include <charconv>
#include <functional>
#include <map>

const char* const kUsage = R"(korra [OPTIONS] [DRAWING]

Opens a drawing, or a new one, and runs the commands that are typed or scripted.

  --module FILE     load an extension module; repeatable; a bare name lies beside the program
  --script FILE     take the input from a file, one input a line; - is standard input
  --template FILE   what a new drawing starts from; else template.dxf where support files lie
  --save FILE       write the drawing at the end
  --set NAME=VALUE  set a system variable; repeatable
  --size WxH        size of the screen in pixels, 800x600 unless set
  --path DIR        look for files in this folder too; repeatable
  --trace           write every call of the host's interface to standard error
  --version         print the version
  --help            print this text

Exit status: 0 done; 1 a command was unknown, or the host was stopped by a fatal message;
2 wrong usage; 3 a file could not be read or written, standard output included.
)";

namespace {

int readPixels(const std::string& text)
{
    int pixels = 0;
    const char* const last = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), last, pixels);
    if (error != std::errc() || end != last || pixels < 1)
        throw UsageError("--size takes WxH in pixels");
    return pixels;
}

Options::Size readSize(const std::string& text)
{
    const std::size_t by = text.find('x');
    if (by == std::string::npos)
        throw UsageError("--size takes WxH in pixels");
    return {readPixels(text.substr(0, by)), readPixels(text.substr(by + 1))};
}

std::pair<std::string, std::string> readAssignment(const std::string& text)
{
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0)
        throw UsageError("--set takes NAME=VALUE");
    return {text.substr(0, sign), text.substr(sign + 1)};
}

using Switch = std::function<void(Options&)>;
using Setting = std::function<void(Options&, const std::string&)>;

const std::map<std::string, Switch> kSwitches = {
    {"--trace", [](Options& options) { options.trace = true; }},
    {"--version", [](Options& options) { options.version = true; }},
    {"--help", [](Options& options) { options.help = true; }},
};

const std::map<std::string, Setting> kSettings = {
    {"--module", [](Options& options, const auto& value) { options.modules.push_back(value); }},
    {"--script", [](Options& options, const auto& value) { options.script = value; }},
    {"--save", [](Options& options, const auto& value) { options.save = value; }},
    {"--template", [](Options& options, const auto& value) { options.startFrom = value; }},
    {"--path", [](Options& options, const auto& value) { options.folders.push_back(value); }},
    {"--size", [](Options& options, const auto& value) { options.size = readSize(value); }},
    {"--set", [](Options& options,
                 const auto& value) { options.variables.push_back(readAssignment(value)); }},
    {"--render",
     [](Options&, const auto&) {
         throw UsageError("--render: this build of korra draws no pictures");
     }},
};

void takeDrawing(Options& options, const std::string& argument)
{
    if (options.drawing)
        throw UsageError("more than one drawing: " + *options.drawing + ", " + argument);
    options.drawing = argument;
}

} // namespace

Options readOptions(const std::vector<std::string>& arguments)
{
    Options options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        if (const auto found = kSwitches.find(*argument); found != kSwitches.end()) {
            found->second(options);
        } else if (const auto setting = kSettings.find(*argument); setting != kSettings.end()) {
            if (++argument == arguments.end())
                throw UsageError(setting->first + " takes a value");
            setting->second(options, *argument);
        } else if (argument->starts_with("--")) {
            throw UsageError("unknown option " + *argument);
        } else {
            takeDrawing(options, *argument);
        }
    }
    return options;
}
