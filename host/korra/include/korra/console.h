#pragma once

#include <functional>
#include <optional>
#include <string>

namespace korra {

/// Where the command line's text goes; the default is nowhere but the kept text.
void setCommandLineOutput(std::function<void(const std::string& utf8)> sink);

/// Everything printed on the command line since the start or the last call, UTF-8.
std::string takePrintedText();

/// Adds one input line to the end of the queue, in the script form: a point, a text, an empty line
/// for Enter, or a hand movement (\esc, \miss, \right, \space, \ctrl x,y, \move x,y).
void queueInput(const std::string& utf8Line);

/// Who shows an input line behind its prompt.
enum class InputEcho {
    byHost, ///< the command line prints it
    byUser  ///< the user sees it already on the screen he types on
};

/// Where input lines come from when the queue is empty; nullopt ends the input for good. Without a
/// source the input ends with the queue: waiting prompts are cancelled, tracking repeats the
/// cursor's last point.
void setInputSource(std::function<std::optional<std::string>()> source,
                    InputEcho echo = InputEcho::byHost);

/// Reads commands and runs them until the input ends or QUIT.
/// @return false when a command was unknown
bool runCommands();

/// Runs one command by name as if it had been typed. @return false when it is unknown
bool runCommand(const std::string& utf8Name);

/// Sets a system variable from text: a number, a point `x,y[,z]`, or any text, as its type wants.
/// @return false, nothing changed, when there is no such variable or it refuses the value
bool setVariable(const std::string& utf8Name, const std::string& utf8Value);

/// What the host's main window shows as its caption, UTF-8.
std::string mainWindowCaption();

} // namespace korra
