#pragma once

namespace korra::ed {

/// Adds the host's own commands to the command stack.
void registerHostCommands();

} // namespace korra::ed
