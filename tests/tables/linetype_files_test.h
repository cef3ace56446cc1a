#pragma once

#include "support/room_test.h"
#include "support/support_folder.h"

namespace tests {

// Both files define A, at different sizes; B and the damaged D are in one of them only.
constexpr const char* kMetricLinetypes = "*A,metric\nA,10,-2\n*D,damaged\nA,ten\n";
constexpr const char* kImperialLinetypes = "*A,imperial\nA,1,-0.5\n*B,imperial alone\nA,3,-1\n"
                                           "*D,whole\nA,1,-1\n";

/// The host finds these definition files.
class LinetypeFilesTest : public HostTest {
protected:
    LinetypeFilesTest()
    {
        folder_.use();
        folder_.write("korraiso.lin", kMetricLinetypes);
        folder_.write("korra.lin", kImperialLinetypes);
    }

    SupportFolder folder_;
};

} // namespace tests
