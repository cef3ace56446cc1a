#include "ed/selection_sets.h"

namespace korra::ed {
namespace {

platform::Tally selectionSetTally("selection set");

} // namespace

void SelectionSets::add(std::vector<Selected> members, kds_name name)
{
    name[0] = ++lastNumber_;
    name[1] = 0;
    sets_.emplace(lastNumber_, Set{std::move(members), platform::Tallied(selectionSetTally)});
}

const std::vector<Selected>* SelectionSets::find(const kds_name name) const
{
    const auto found = sets_.find(name[0]);
    return found == sets_.end() ? nullptr : &found->second.members;
}

bool SelectionSets::remove(const kds_name name)
{
    return sets_.erase(name[0]) != 0;
}

} // namespace korra::ed
