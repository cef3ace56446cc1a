// Documents, their manager, locks and reactors; starting and stopping the host.

#include "support/room_test.h"

#include "kd/ap.h"

namespace {

KdApDocManager& manager()
{
    return *kdDocManagerPtr();
}

/// Notes what it is told; can take itself or another one away while it is told.
class Listener : public KdApDocManagerReactor {
public:
    explicit Listener(std::vector<std::string>& notes, std::string name = "")
        : notes_(notes), name_(std::move(name))
    {
        manager().addReactor(this);
    }

    ~Listener() override
    {
        if (kdDocManagerPtr())
            manager().removeReactor(this);
    }

    void documentCreated(KdApDocument*) override
    {
        notes_.push_back(name_ + "created");
        if (removedWhenCreated)
            manager().removeReactor(removedWhenCreated);
    }

    void documentToBeDestroyed(KdApDocument* document) override
    {
        notes_.push_back(name_ + "closing");
        EXPECT_NE(document->database(), nullptr);
        EXPECT_EQ(manager().curDocument(), document);
    }

    void documentDestroyed(const KdApDocument* document) override
    {
        notes_.push_back(name_ + "closed");
        EXPECT_NE(manager().curDocument(), document);
    }

    KdApDocManagerReactor* removedWhenCreated = nullptr;

private:
    std::vector<std::string>& notes_;
    std::string name_;
};

class DocumentTest : public HostTest {};

TEST_F(DocumentTest, TheDatabaseOfTheCurrentDocumentIsTheWorkingOne)
{
    KdApDocument* first = manager().curDocument();
    KdApDocument* second = korra::newDocument();
    EXPECT_EQ(manager().curDocument(), second);
    EXPECT_EQ(&database(), second->database());

    korra::closeDocument(*first); // another than the current one
    EXPECT_EQ(manager().curDocument(), second);
    EXPECT_EQ(&database(), second->database());
    korra::closeDocument(*second);
    EXPECT_EQ(manager().curDocument(), nullptr);
    EXPECT_EQ(kddbHostApplicationServices()->workingDatabase(), nullptr);
}

TEST_F(DocumentTest, LocksNestAndTheStrongestShows)
{
    KdApDocument* document = manager().curDocument();
    EXPECT_EQ(manager().lockDocument(document, KdAp::kRead), Kdapi::eOk);
    EXPECT_EQ(document->lockMode(), KdAp::kRead);
    EXPECT_EQ(manager().lockDocument(document), Kdapi::eOk);
    EXPECT_EQ(document->lockMode(), KdAp::kWrite);
    EXPECT_THAT(korra::audit(), ElementsAre(HasSubstr("locked 2 times")));
    EXPECT_EQ(manager().unlockDocument(document), Kdapi::eOk);
    EXPECT_EQ(document->lockMode(), KdAp::kRead);
    EXPECT_EQ(manager().unlockDocument(document), Kdapi::eOk);
    EXPECT_EQ(manager().unlockDocument(document), Kdapi::eLockViolation);
    EXPECT_EQ(document->lockMode(), KdAp::kNotLocked);

    EXPECT_EQ(manager().lockDocument(nullptr), Kdapi::eNoDocument);
    EXPECT_EQ(manager().unlockDocument(nullptr), Kdapi::eOk);
    EXPECT_EQ(manager().lockDocument(document, KdAp::kNone), Kdapi::eLockViolation);
}

TEST_F(DocumentTest, ReactorsMayLeaveWhileTheyAreTold)
{
    std::vector<std::string> notes;
    Listener first(notes, "1 ");
    Listener second(notes, "2 ");
    Listener third(notes, "3 ");
    first.removedWhenCreated = &first;
    second.removedWhenCreated = &third;
    korra::newDocument();
    korra::newDocument();
    EXPECT_THAT(notes, ElementsAre("1 created", "2 created", "2 created"));
}

TEST_F(DocumentTest, StoppingTheHostClosesEveryDocumentButNotDatabasesOfOthers)
{
    {
        const KdDbDatabase ours(true, true);
        std::vector<std::string> notes;
        Listener listener(notes);
        manager().addReactor(&listener); // a second time counts for nothing
        korra::newDocument();
        korra::stopHost();
        EXPECT_THAT(notes, ElementsAre("created", "closing", "closed", "closing", "closed"));
        EXPECT_EQ(kdDocManagerPtr(), nullptr);
        EXPECT_FALSE(korra::hostIsRunning());
        EXPECT_EQ(kddbHostApplicationServices()->workingDatabase(), nullptr);
        EXPECT_TRUE(ours.clayer().isValid());
    }
    startFreshHost();
}

} // namespace
