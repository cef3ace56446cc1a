#include "ap/documents.h"

#include "platform/gate.h"

#include <algorithm>

KDRX_DEFINE_MEMBERS(KdApDocManagerReactor, KdRxObject)

KdApDocManager* kdDocManagerPtr()
{
    return korra::documentManager();
}

namespace korra {
namespace {

DocumentManager* running = nullptr;

bool canLockWith(KdAp::DocLockMode mode)
{
    return mode == KdAp::kWrite || mode == KdAp::kAutoWrite || mode == KdAp::kRead;
}

} // namespace

DocumentManager* documentManager()
{
    return running;
}

Document::Document(std::wstring name, std::unique_ptr<KdDbDatabase> database)
    : name_(std::move(name)), database_(std::move(database))
{
}

Document::~Document() = default;

KdAp::DocLockMode Document::lockMode() const
{
    for (const KdAp::DocLockMode mode : {KdAp::kWrite, KdAp::kAutoWrite, KdAp::kRead}) {
        if (std::ranges::find(locks_, mode) != locks_.end())
            return mode;
    }
    return KdAp::kNotLocked;
}

DocumentManager::DocumentManager()
{
    running = this;
}

DocumentManager::~DocumentManager()
{
    running = nullptr;
}

Kdapi::ErrorStatus DocumentManager::lockDocument(KdApDocument* document, KdAp::DocLockMode mode,
                                                 const wchar_t* globalCommandName, const wchar_t*,
                                                 bool prompt)
{
    return platform::gate("KdApDocManager::lockDocument", mode, globalCommandName, prompt)
        .guard(Kdapi::eLockViolation, [&] {
            Document* known = find(document);
            if (!known)
                return Kdapi::eNoDocument;
            if (!canLockWith(mode))
                return Kdapi::eLockViolation;
            known->locks_.push_back(mode);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus DocumentManager::unlockDocument(KdApDocument* document)
{
    return platform::gate("KdApDocManager::unlockDocument").afterwards(Kdapi::eLockViolation, [&] {
        if (!document)
            return Kdapi::eOk;
        Document* known = find(document);
        if (!known || known->locks_.empty())
            return Kdapi::eLockViolation;
        known->locks_.pop_back();
        return Kdapi::eOk;
    });
}

void DocumentManager::addReactor(KdApDocManagerReactor* reactor)
{
    platform::gate("KdApDocManager::addReactor").always([&] {
        if (reactor && std::ranges::find(reactors_, reactor) == reactors_.end())
            reactors_.push_back(reactor);
    });
}

void DocumentManager::removeReactor(KdApDocManagerReactor* reactor)
{
    platform::gate("KdApDocManager::removeReactor").always([&] { std::erase(reactors_, reactor); });
}

std::vector<Document*> DocumentManager::documents() const
{
    std::vector<Document*> open;
    for (const auto& document : documents_)
        open.push_back(document.get());
    return open;
}

void DocumentManager::setCurrent(Document* document)
{
    if (document == current_)
        return;
    current_ = document;
    kddbHostApplicationServices()->setWorkingDatabase(document ? document->database() : nullptr);
}

Document& DocumentManager::open(std::wstring name, std::unique_ptr<KdDbDatabase> database)
{
    Document& document =
        *documents_.emplace_back(std::make_unique<Document>(std::move(name), std::move(database)));
    setCurrent(&document);
    for (DocumentObserver* observer : std::vector(observers_))
        observer->documentOpened(document);
    tellReactors([&](KdApDocManagerReactor& reactor) { reactor.documentCreated(&document); });
    return document;
}

void DocumentManager::close(Document& document)
{
    Document* const before = current_;
    setCurrent(&document);
    tellReactors([&](KdApDocManagerReactor& reactor) { reactor.documentToBeDestroyed(&document); });
    const std::vector<DocumentObserver*> observers = observers_;
    for (auto observer = observers.rbegin(); observer != observers.rend(); ++observer)
        (*observer)->documentClosing(document);

    const auto place = std::ranges::find(documents_, &document, &std::unique_ptr<Document>::get);
    std::unique_ptr<Document> closing = std::move(*place);
    documents_.erase(place);
    if (before != &document)
        setCurrent(before);
    else
        setCurrent(documents_.empty() ? nullptr : documents_.back().get());
    closing.reset();
    tellReactors([&](KdApDocManagerReactor& reactor) { reactor.documentDestroyed(&document); });
}

void DocumentManager::addObserver(DocumentObserver* observer)
{
    observers_.push_back(observer);
}

void DocumentManager::removeObserver(DocumentObserver* observer)
{
    std::erase(observers_, observer);
}

Document* DocumentManager::find(const KdApDocument* document) const
{
    const auto found = std::ranges::find_if(
        documents_, [document](const auto& candidate) { return candidate.get() == document; });
    return found == documents_.end() ? nullptr : found->get();
}

template <class Call>
void DocumentManager::tellReactors(Call call)
{
    for (KdApDocManagerReactor* reactor : std::vector(reactors_)) {
        if (std::ranges::find(reactors_, reactor) == reactors_.end())
            continue;
        const platform::TurnOf turn(platform::Party::module);
        call(*reactor);
    }
}

} // namespace korra
