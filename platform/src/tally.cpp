#include "platform/tally.h"

#include <algorithm>

namespace {
/// Not destroyed: tallies of other libraries leave it at any time until the program has ended.
std::vector<const platform::Tally*>& tallies()
{
    static auto& all = *new std::vector<const platform::Tally*>;
    return all;
}

std::string inWords(const platform::Tally& tally)
{
    std::string text = std::to_string(tally.count()) + ' ' + tally.what();
    if (tally.count() == 1)
        return text;
    if (text.ends_with('y'))
        text.replace(text.size() - 1, 1, "ie");
    return text + 's';
}
} // namespace

platform::Tally::Tally(const char* what) : what_(what)
{
    tallies().push_back(this);
}

platform::Tally::~Tally()
{
    std::erase(tallies(), this);
}

std::vector<std::string> platform::leftovers()
{
    std::vector<std::string> words;
    for (const Tally* tally : tallies()) {
        if (tally->count() != 0)
            words.push_back(inWords(*tally));
    }
    std::sort(words.begin(), words.end());
    return words;
}
