#include "output.h"
#include "session.h"

#include <csignal>
#include <cstdio>
#include <exception>

namespace {

int run(const Options& options)
{
    if (options.help) {
        print(kUsage);
        requireOutput();
        return kDone;
    }
    if (options.version) {
        print("korra " KORRA_VERSION "\n");
        requireOutput();
        return kDone;
    }
    return runSession(options);
}

} // namespace

int main(int count, char** arguments)
{
    std::signal(SIGPIPE, SIG_IGN); // a pipe that nobody reads is told like a full disk
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
