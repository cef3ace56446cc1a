#pragma once

#include <istream>
#include <optional>
#include <string>

/// The inputs of a script, one a line; lines that begin with `;` are comments.
class Script {
public:
    explicit Script(std::istream& lines) : lines_(lines) {}

    /// The next input without its line end; nullopt behind the last one.
    std::optional<std::string> next();

private:
    std::istream& lines_;
    bool begun_ = false;
};
