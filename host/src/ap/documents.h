#pragma once

#include "kd/ap.h"
#include "kd/db/database.h"

#include <memory>
#include <string>
#include <vector>

namespace korra {

/// What the editor keeps for one document; the editor makes it when the document is opened.
struct EditorDocument;

/// An open drawing as the host itself sees it.
class Document final : public KdApDocument {
public:
    /// @param name  full path, or the title of a drawing that was never saved
    Document(std::wstring name, std::unique_ptr<KdDbDatabase> database);
    ~Document() override;

    const wchar_t* fileName() const override { return name_.c_str(); }

    KdDbDatabase* database() const override { return database_.get(); }

    KdAp::DocLockMode lockMode() const override;

    KdDbTransactionManager* transactionManager() const override
    {
        return database_->transactionManager();
    }

    void setFileName(std::wstring name) { name_ = std::move(name); }

    /// Locks taken and not yet given back.
    std::size_t lockCount() const { return locks_.size(); }

    std::shared_ptr<EditorDocument> editor;

private:
    friend class DocumentManager;

    std::wstring name_;
    std::unique_ptr<KdDbDatabase> database_;
    std::vector<KdAp::DocLockMode> locks_; ///< innermost last
};

/// A part of the host that follows the documents. Observers are told before the reactors of add-ons
/// about what opens, and after them about what closes.
class DocumentObserver {
public:
    virtual ~DocumentObserver() = default;

    /// The document is in the list, its database whole; it is current.
    virtual void documentOpened(Document& document) = 0;

    /// The document is about to go; it is current and still in the list.
    virtual void documentClosing(Document& document) = 0;
};

/// The open documents in the order of opening, the current one, their locks and who follows them.
class DocumentManager final : public KdApDocManager {
public:
    DocumentManager();
    ~DocumentManager() override;
    DocumentManager(const DocumentManager&) = delete;
    DocumentManager& operator=(const DocumentManager&) = delete;

    KdApDocument* curDocument() const override { return current_; }

    Kdapi::ErrorStatus lockDocument(KdApDocument* document, KdAp::DocLockMode mode,
                                    const wchar_t* globalCommandName,
                                    const wchar_t* localCommandName, bool prompt) override;
    Kdapi::ErrorStatus unlockDocument(KdApDocument* document) override;
    void addReactor(KdApDocManagerReactor* reactor) override;
    void removeReactor(KdApDocManagerReactor* reactor) override;

    /// Documents open now, in the order of opening.
    std::vector<Document*> documents() const;

    Document* current() const { return current_; }

    /// Makes a document current and its database the working one; null: none.
    void setCurrent(Document* document);

    /// Puts a new document into the list, makes it current and tells everyone.
    Document& open(std::wstring name, std::unique_ptr<KdDbDatabase> database);

    /// Tells everyone, takes the document out of the list and deletes it; the last one opened of
    /// the others becomes current.
    void close(Document& document);

    /// An observer is not owned. Observers are called in the order of adding about what opens, in
    /// reverse about what closes.
    void addObserver(DocumentObserver* observer);
    void removeObserver(DocumentObserver* observer);

private:
    Document* find(const KdApDocument* document) const;

    /// Calls every reactor that was there at the start and is still there when its turn comes.
    template <class Call>
    void tellReactors(Call call);

    std::vector<std::unique_ptr<Document>> documents_;
    std::vector<KdApDocManagerReactor*> reactors_;
    std::vector<DocumentObserver*> observers_;
    Document* current_ = nullptr;
};

/// The one manager that there is while a host runs; null while none does.
DocumentManager* documentManager();

} // namespace korra
