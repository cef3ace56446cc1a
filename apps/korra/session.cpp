#include "session.h"

#include "korra/console.h"
#include "korra/host.h"
#include "korra/modules.h"
#include "output.h"
#include "platform/faults.h"
#include "script.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <memory>

namespace {

/// The host for the length of a scope.
class RunningHost {
public:
    explicit RunningHost(const Options& options)
    {
        korra::HostOptions host;
        if (options.size) {
            host.screenWidth = options.size->width;
            host.screenHeight = options.size->height;
        }
        korra::startHost(host);
    }

    ~RunningHost() { korra::stopHost(); }

    RunningHost(const RunningHost&) = delete;
    RunningHost& operator=(const RunningHost&) = delete;
};

void require(const korra::FileOutcome& outcome)
{
    if (!outcome.done)
        throw FileFailure(outcome.message);
}

/// What is to be known of a drawing that was opened or saved goes to the errors.
void tellNotes(const korra::FileOutcome& outcome)
{
    require(outcome);
    for (const std::string& note : outcome.notes)
        std::fprintf(stderr, "korra: %s\n", note.c_str());
}

void addFolders(const Options& options)
{
    for (const std::string& folder : options.folders) {
        korra::addModuleFolder(folder);
        korra::addSupportFolder(folder);
    }
}

std::optional<std::string> templateOf(const Options& options)
{
    return options.startFrom ? options.startFrom : korra::findSupportFile("template.dxf");
}

KdApDocument* openDrawing(const Options& options)
{
    KdApDocument* document = nullptr;
    if (options.drawing)
        tellNotes(korra::openDocument(*options.drawing, document));
    else if (const auto path = templateOf(options))
        tellNotes(korra::newDocumentFrom(*path, document));
    else
        document = korra::newDocument();
    return document;
}

void save(const Options& options, KdApDocument& document)
{
    tellNotes(korra::saveDocument(document, *options.save));
    if (!options.drawing && !templateOf(options))
        std::fprintf(stderr,
                     "korra: %s: made without a template; some programs read only drawings that "
                     "began with one of theirs\n",
                     options.save->c_str());
}

void prepare(const Options& options)
{
    for (const std::string& module : options.modules)
        require(korra::loadModule(module));
    for (const auto& [name, value] : options.variables)
        if (!korra::setVariable(name, value))
            throw UsageError("--set: " + name + " cannot be set to \"" + value + "\"");
}

std::unique_ptr<std::ifstream> openScript(const Options& options)
{
    if (!options.script || *options.script == "-")
        return nullptr;
    auto file = std::make_unique<std::ifstream>(*options.script, std::ios::binary);
    file->peek(); // a folder opens, but cannot be read
    if (!file->is_open() || file->bad())
        throw FileFailure(*options.script + ": cannot be read");
    file->clear();
    return file;
}

/// Runs the commands of a script or of whoever types; ends where nobody would see what they print.
/// @param name  of the script, for messages
/// @return false when a command was unknown
bool runInput(std::istream& lines, const std::string& name, bool typed)
{
    Script script(lines);
    korra::setInputSource([&script] { return print("") ? script.next() : std::nullopt; },
                          typed ? korra::InputEcho::byUser : korra::InputEcho::byHost);
    const bool allKnown = korra::runCommands();
    korra::setInputSource(nullptr);
    requireOutput();
    if (script.isRefused())
        throw FileFailure(name + ':' + std::to_string(script.line()) +
                          ": the line is longer than a megabyte");
    return allKnown;
}

ExitStatus runHosted(const Options& options)
{
    const RunningHost host(options);
    korra::setCommandLineOutput(print);
    platform::echoTrace(options.trace);
    const auto file = openScript(options);
    addFolders(options);
    KdApDocument* const document = openDrawing(options);
    prepare(options);

    std::istream& lines = file ? *file : std::cin;
    const bool allKnown =
        runInput(lines, file ? *options.script : "standard input", !file && isatty(STDIN_FILENO));
    if (options.save)
        save(options, *document);
    return allKnown ? kDone : kUnknownCommand;
}

} // namespace

ExitStatus runSession(const Options& options)
{
    try {
        return runHosted(options);
    } catch (const FileFailure& failure) {
        std::fprintf(stderr, "korra: %s\n", failure.what());
        return kFileFailure;
    }
}
