#include "control/host_state.h"
#include "korra/host.h"
#include "objects/contents.h"
#include "objects/object_slots.h"

#include "platform/gate.h"
#include "platform/tally.h"
#include "platform/text.h"

#include <algorithm>

namespace korra {
namespace {

using Words = std::vector<std::string>;

void listFreeStanding(Words& words)
{
    for (const KdRxClass* description : ObjectAccess::freeStandingClasses())
        words.push_back("free-standing " + platform::toUtf8(description->name()));
}

void listDatabases(Words& words, const std::vector<Document*>& documents)
{
    for (const KdDbDatabase* database : liveDatabases()) {
        const bool isDocuments = std::ranges::any_of(
            documents, [=](const Document* open) { return open->database() == database; });
        if (!isDocuments)
            words.push_back("database of no document");
    }
}

void listLocks(Words& words, const std::vector<Document*>& documents)
{
    for (const Document* document : documents) {
        if (document->lockCount() > 0)
            words.push_back(platform::toUtf8(document->fileName()) + " is locked " +
                            std::to_string(document->lockCount()) + " times");
    }
}

} // namespace

std::vector<std::string> audit()
{
    const platform::TurnOf turn(platform::Party::host);
    Words words = platform::leftovers();
    std::vector<Document*> documents;
    if (const Host* running = runningHost()) {
        documents = running->documents.documents();
        const Words open = runningSlots()->openObjects();
        words.insert(words.end(), open.begin(), open.end());
    }
    listFreeStanding(words);
    listDatabases(words, documents);
    listLocks(words, documents);
    return words;
}

} // namespace korra
