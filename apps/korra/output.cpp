#include "output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

int failure = 0; ///< the first error of standard output

} // namespace

bool print(const std::string& text)
{
    if (failure == 0) {
        const bool isOut = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() &&
                           std::fflush(stdout) == 0;
        failure = isOut ? 0 : errno;
    }
    return failure == 0;
}

void requireOutput()
{
    if (failure != 0)
        throw FileFailure(std::string("standard output: cannot be written: ") +
                          std::strerror(failure));
}
