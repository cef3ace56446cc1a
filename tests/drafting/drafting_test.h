#pragma once

#include "support/room_test.h"

/// Runs the commands of the add-on, loaded into a fresh host.
class DraftingTest : public HostTest {
protected:
    DraftingTest()
    {
        EXPECT_TRUE(kdrxLoadModule(L"drafting", false, false));
        printed();
    }

    /// What a command prints behind its inputs.
    static std::string run(const std::string& command, const std::vector<std::string>& inputs = {})
    {
        give(inputs);
        EXPECT_TRUE(korra::runCommand(command));
        return printed();
    }

    /// The last line that a command prints.
    static std::string last(const std::string& command, const std::vector<std::string>& inputs)
    {
        std::string text = run(command, inputs);
        text.erase(text.find_last_not_of('\n') + 1);
        return text.substr(text.rfind('\n') + 1);
    }
};
