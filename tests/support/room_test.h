#pragma once

// What the tests of the rooms lean on, and the names that they all use.

#include "support/drawing.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/objects.h"
#include "support/support_folder.h"
#include "support/variables.h"

using namespace tests;
using namespace ::testing;
