#pragma once

#include "kd/db.h"
#include "kd/ed.h"
#include "korra/console.h"
#include "korra/host.h"
#include "platform/faults.h"
#include "support/sweep_faults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

class KdApDocument;

namespace tests {

/// A fresh host with one new drawing for every test; afterwards nothing may be left over.
class HostTest : public ::testing::Test {
protected:
    HostTest();
    ~HostTest() override;

    KdDbDatabase& database() const;

    /// What was printed on the command line since the last call, UTF-8.
    static std::string printed() { return korra::takePrintedText(); }
};

/// Input that waits, a line each.
void give(const std::vector<std::string>& lines);

/// Starts a fresh host with one new drawing and records fatal stops.
void startFreshHost();

/// Adds an entity to the current space of the working database and closes it.
KdDbObjectId addEntity(KdDbEntity* entity);

/// Adds lines from (0, 0) to (10, 0).
std::vector<KdDbObjectId> addLines(int count);

/// Adds an entity to a block (made when it is missing) of the working database and closes it.
KdDbObjectId addEntityToBlock(const wchar_t* block, KdDbEntity* entity);

/// The record of a block of the working database; null when there is none.
KdDbObjectId blockId(const wchar_t* name);

/// Names of the operations that the host is asked for while `scenario` runs, in order.
std::vector<std::string> tracedOperations(const std::function<void()>& scenario);

/// Runs a scenario with one fallible host call after the other failing, in the end with none, and
/// each time the check behind it; `prepare` runs before, unharmed.
void failEachCall(const std::function<void()>& prepare, const std::function<void()>& scenario,
                  const std::function<void()>& check);

/// Result and printed text of a scenario, once for each of its host calls with that call failing.
/// Each run has a fresh host; `prepare` runs unharmed.
std::vector<std::string> outcomesOfFailures(const std::function<void()>& prepare,
                                            const std::function<int()>& scenario);

} // namespace tests
