#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace korra::ed {

/// The text of the command line: prompts, echoed input, messages. All of it is UTF-8.
class CommandLine {
public:
    void setOutput(std::function<void(const std::string&)> output) { output_ = std::move(output); }

    /// Prints text as it stands. Where input has just ended the line, a line feed that the text
    /// begins with asks for what is there already and is left out.
    void print(std::string_view text);

    /// Ends the line unless nothing stands on it.
    void freshLine();

    /// Shows an input behind its prompt and ends the line.
    void echo(std::string_view input);

    /// The user's own screen has shown the input and ended the line.
    void lineEndedByUser();

    /// Everything printed since the last call.
    std::string take() { return std::exchange(kept_, {}); }

private:
    void put(std::string_view text);

    std::function<void(const std::string&)> output_;
    std::string kept_;
    bool atLineStart_ = true;
    bool endedByInput_ = false;
};

} // namespace korra::ed
