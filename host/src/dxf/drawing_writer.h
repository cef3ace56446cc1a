#pragma once

#include "dxf/tag_writer.h"
#include "objects/contents.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korra {

/// Writes a drawing: what came from a file and is the same as it was there, byte for byte.
///
/// What the host added to make a drawing of a file whole is left out, for it is added again when
/// the file is read, unless the drawing got new objects of the objects section: then everything is
/// written, so that their owners are there.
///
/// A drawing of the oldest version gets nothing that its version does not know: what is new in it
/// is written in other words (oldest_version.h) or refused.
class DrawingWriter {
public:
    explicit DrawingWriter(const DatabaseContents& contents);

    std::string text();

private:
    static bool belongsToObjectsSection(const KdDbObject& object);
    bool hasNewObjects() const;
    bool needsObjectsSection() const;
    void refuseNewObjects() const;
    KdDbObjectId applicationOfViews() const;
    bool isNew(const ObjectSlot& slot) const;
    bool isChanged(const ObjectSlot& slot) const;
    bool isWritten(const ObjectSlot& slot) const;
    bool writesBlockRecords() const;

    FileForm::Section newSection(const std::string& name) const;
    void updateHeader(std::vector<FileForm::Section>& sections) const;
    void addMissingSections(std::vector<FileForm::Section>& sections);
    std::string sectionBody(const std::string& name);
    DrawingHeader headerToWrite() const;
    std::string given(KdDbObjectId id, std::string_view bytes);
    std::string withOwnHandle(const std::string& frame);
    std::string newFrame(const char* type, KdDbObjectId owner, const char* last = nullptr) const;
    std::string tables();
    std::string newTableText(TableKind kind);
    std::string tableText(const FileForm::Table& table, TableKind kind);

    struct Records {
        std::string text;
        int count = 0;
        int added = 0; ///< of these, records that the file did not have
    };

    Records records(TableKind kind);

    std::string blocks();
    const FileForm::BlockFrame* frameOf(const KdDbBlockTableRecord& block) const;
    std::vector<KdDbBlockTableRecord*> liveBlocks() const;
    bool needsDefinition(KdDbBlockTableRecord& block) const;
    std::vector<KdDbBlockTableRecord*> blocksToWrite() const;
    std::vector<const ObjectSlot*> entitiesToWrite(KdDbBlockTableRecord& block) const;
    std::string blockText(KdDbBlockTableRecord& block);
    std::string blockBegin(KdDbBlockTableRecord& block, const FileForm::BlockFrame* frame);
    std::string entities();
    std::string spaceEntityText(KdDbEntity& entity);
    std::string entityText(KdDbEntity& entity);
    std::vector<std::string> entityTexts(KdDbEntity& entity);
    std::string partsText(KdDbEntity& entity);
    std::optional<std::vector<std::string>> standInTexts(const KdDbEntity& entity);
    std::optional<std::vector<std::string>> newStandInTexts(const KdDbEntity& entity);
    std::string objects();
    std::string sourceText(const KdDbObject& object);
    std::string objectText(KdDbObject& object);
    std::string fieldsText(KdDbObject& object, std::string_view tags);
    std::string newObjectHead(const KdDbObject& object);
    std::string ownerTag(const KdDbObject& object) const;
    std::string tag(int code, std::string_view value) const;
    std::string marker(const char* stem) const;

    const DatabaseContents& contents_;
    const FileForm& form_;
    std::string_view lineEnd_;
    bool isOldest_;
    std::optional<std::string> markerPrefix_; ///< none: neither markers nor owners of entities
    TagWriter writer_;
    std::uint64_t lastHandle_ = 0; ///< the greatest that was given to what lacked one
    std::uint64_t nextHandle_;     ///< for what frames objects and is none itself
    bool writesEverything_;
    KdDbObjectId viewApplication_; ///< whose record is written for the views of viewports
};

} // namespace korra
