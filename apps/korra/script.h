#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>

/// The inputs of a script, one a line; lines that begin with `;` are comments.
class Script {
public:
    explicit Script(std::istream& lines) : lines_(lines) {}

    /// The next input without its line end; nullopt behind the last one.
    std::optional<std::string> next();

    /// True when the script ended with a line that is longer than a megabyte.
    bool isRefused() const { return refused_; }

    /// Number of the line that was read last.
    std::size_t line() const { return line_; }

private:
    bool read(std::string& text);

    std::istream& lines_;
    std::size_t line_ = 0;
    bool refused_ = false;
};
