#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

/// What the command line of the program asks for.
struct Options {
    struct Size {
        int width;
        int height;
    };

    std::vector<std::string> modules;
    std::vector<std::string> folders; ///< searched for modules and support files
    std::vector<std::pair<std::string, std::string>> variables; ///< name and value
    std::optional<std::string> script;                          ///< `-`: standard input
    std::optional<std::string> save;
    std::optional<std::string> drawing;
    std::optional<std::string> startFrom; ///< the template of a new drawing
    std::optional<Size> size;             ///< of the screen, pixels
    bool trace = false;
    bool version = false;
    bool help = false;
};

/// The arguments are not what the program takes; what() says why in one line.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the arguments behind the program's name. @throw UsageError
Options readOptions(const std::vector<std::string>& arguments);

/// What the program takes, for `--help`.
extern const char* const kUsage;
