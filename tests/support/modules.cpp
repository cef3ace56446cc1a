#include "support/modules.h"

#include "kd/rx.h"
#include "platform/faults.h"
#include "platform/text.h"

#include <algorithm>
#include <fstream>
#include <memory>

namespace tests {

std::vector<std::string> tracedCalls(const std::function<void()>& scenario)
{
    platform::startTrace();
    scenario();
    std::vector<std::string> calls;
    for (const platform::TracedCall& call : platform::stopTrace())
        calls.push_back(toText(call));
    return calls;
}

std::vector<std::string> only(const std::vector<std::string>& calls,
                              const std::vector<std::string_view>& operations)
{
    std::vector<std::string> kept;
    for (const std::string& call : calls) {
        const std::string_view operation(call.data(), call.find('('));
        if (std::find(operations.begin(), operations.end(), operation) != operations.end())
            kept.push_back(call);
    }
    return kept;
}

std::vector<std::string> loadedModules()
{
    std::vector<std::string> names;
    const std::unique_ptr<KdArray<wchar_t*>> loaded(kdrxLoadedApps());
    for (const wchar_t* name : *loaded) {
        names.push_back(narrow(name));
        delete[] name;
    }
    return names;
}

bool isMapped(std::string_view fileName)
{
    std::ifstream maps("/proc/self/maps");
    const std::string wanted = '/' + std::string(fileName);
    for (std::string line; std::getline(maps, line);) {
        if (line.ends_with(wanted))
            return true;
    }
    return false;
}

std::string narrow(const wchar_t* text)
{
    return platform::toUtf8(text);
}

} // namespace tests
