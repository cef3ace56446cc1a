#include "session.h"

#include <cstdio>
#include <exception>

namespace {

int run(const Options& options)
{
    if (options.help) {
        std::fputs(kUsage, stdout);
        return kDone;
    }
    if (options.version) {
        std::puts("korra " KORRA_VERSION);
        return kDone;
    }
    return runSession(options);
}

} // namespace

int main(int count, char** arguments)
{
    try {
        return run(readOptions({arguments + 1, arguments + count}));
    } catch (const UsageError& error) {
        std::fprintf(stderr, "korra: %s\nTry korra --help.\n", error.what());
        return kWrongUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "korra: %s\n", error.what());
        return kFileFailure;
    }
}
