#pragma once

#include <stdexcept>
#include <string>

/// A file that could not be read or written, standard output included; what() is the message.
class FileFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Writes to standard output at once: a module that crashes takes no text with it.
/// @return false when that or an earlier text could not be written
bool print(const std::string& text);

/// @throw FileFailure when something could not be written to standard output
void requireOutput();
