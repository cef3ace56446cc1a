#include "dxf/drawing_writer.h"

#include "dxf/block_nesting.h"
#include "dxf/class_markers.h"
#include "dxf/drawing_error.h"
#include "dxf/header_section.h"
#include "dxf/object_kinds.h"
#include "dxf/oldest_version.h"
#include "dxf/tag_text.h"
#include "form/numbers.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

namespace korra {
namespace {

/// The first two are never added here.
constexpr std::array kSectionOrder = {"HEADER", "CLASSES",  "TABLES",
                                      "BLOCKS", "ENTITIES", "OBJECTS"};

/// Tables that others refer to come first.
constexpr std::array<TableKind, kTableKinds> kTableOrder = {
    TableKind::viewport, TableKind::linetype, TableKind::layer,    TableKind::textStyle,
    TableKind::ucs,      TableKind::regApp,   TableKind::dimStyle, TableKind::block};

/// The handle behind another one; behind the very last one the first.
std::uint64_t handleBehind(std::uint64_t handle)
{
    return handle < kLastHandle ? handle + 1 : 1;
}

/// The first handle behind those of the file and of its objects.
std::uint64_t handleBehindAll(const DatabaseContents& contents)
{
    std::uint64_t last = contents.form.lastHandle;
    for (const ObjectSlot* slot : contents.slots)
        last = std::max(last, slot->erased ? 0 : slot->handle.value());
    return handleBehind(last);
}

bool isUsed(const DatabaseContents& contents, std::uint64_t handle)
{
    const ObjectSlot* const slot = contents.byHandle.find(handle);
    return slot && !slot->erased;
}

} // namespace

DrawingWriter::DrawingWriter(const DatabaseContents& contents)
    : contents_(contents),
      form_(contents.form),
      lineEnd_(contents.form.crlf ? "\r\n" : "\n"),
      isOldest_(isOfOldestVersion(contents)),
      markerPrefix_(hasNewObjects() && !isOldest_ ? markerPrefix(contents) : std::nullopt),
      writer_(contents, markerPrefix_,
              isOldest_ ? TagWriter::TrueColors::refused : TagWriter::TrueColors::written),
      nextHandle_(handleBehindAll(contents)),
      writesEverything_(!contents.form.isFromFile() || (needsObjectsSection() && !isOldest_)),
      viewApplication_(applicationOfViews())
{
}

bool DrawingWriter::belongsToObjectsSection(const KdDbObject& object)
{
    return !KdDbEntity::cast(&object) && !KdDbSymbolTable::cast(&object) &&
           !KdDbSymbolTableRecord::cast(&object);
}

bool DrawingWriter::isNew(const ObjectSlot& slot) const
{
    return slot.index > form_.lastReadIndex ||
           (slot.changed && ObjectAccess::source(*slot.object).empty());
}

bool DrawingWriter::isChanged(const ObjectSlot& slot) const
{
    return slot.changed || (writesEverything_ && form_.completed.contains(slot.object->objectId()));
}

bool DrawingWriter::isWritten(const ObjectSlot& slot) const
{
    return !slot.erased &&
           (writesEverything_ || isNew(slot) || !ObjectAccess::source(*slot.object).empty() ||
            slot.object->objectId() == viewApplication_);
}

bool DrawingWriter::hasNewObjects() const
{
    return std::ranges::any_of(
        contents_.slots, [&](const ObjectSlot* slot) { return !slot->erased && isNew(*slot); });
}

bool DrawingWriter::needsObjectsSection() const
{
    return std::ranges::any_of(contents_.slots, [&](const ObjectSlot* slot) {
        return !slot->erased && belongsToObjectsSection(*slot->object) && isNew(*slot);
    });
}

/// @throw DrawingError
void DrawingWriter::refuseNewObjects() const
{
    for (const ObjectSlot* slot : contents_.slots) {
        if (!slot->erased && belongsToObjectsSection(*slot->object) && isNew(*slot))
            throw DrawingError{0, nameOf(*slot->object) +
                                      ": a drawing of its version has no section for objects"};
    }
}

/// In the oldest version views are extended data of an application, which has a record then.
KdDbObjectId DrawingWriter::applicationOfViews() const
{
    const bool hasViews =
        isOldest_ && std::ranges::any_of(contents_.slots, [&](const ObjectSlot* slot) {
            return !slot->erased && KdDbViewport::cast(slot->object) &&
                   (slot->changed || isNew(*slot)) &&
                   !tellsView(ObjectAccess::source(*slot->object));
        });
    return hasViews ? contents_.record(TableKind::regApp, L"ACAD") : KdDbObjectId();
}

bool DrawingWriter::writesBlockRecords() const
{
    return writesEverything_ ||
           std::ranges::find(form_.tables, kindOfTable(TableKind::block).fileName,
                             &FileForm::Table::name) != form_.tables.end();
}

std::string DrawingWriter::tag(int code, std::string_view value) const
{
    std::string text;
    appendTag(text, code, value, lineEnd_);
    return text;
}

/// A class marker; nothing where the drawing has none.
std::string DrawingWriter::marker(const char* stem) const
{
    return markerPrefix_ ? tag(100, *markerPrefix_ + stem) : std::string();
}

std::string DrawingWriter::text()
{
    if (isOldest_)
        refuseNewObjects();
    checkBlockNesting(contents_, [](const KdDbBlockTableRecord&) { return std::size_t{0}; });
    std::vector<FileForm::Section> sections = form_.sections;
    for (FileForm::Section& section : sections)
        section.bytes = std::move(section.bytes) + sectionBody(section.name);
    addMissingSections(sections);
    updateHeader(sections); // last: it tells the handles that were written
    const std::string closing = form_.closing.empty() ? tag(0, "EOF") : form_.closing;
    std::size_t size = form_.opening.size() + closing.size();
    for (const FileForm::Section& section : sections)
        size += section.head.size() + section.bytes.size() + section.tail.size();
    std::string text;
    text.reserve(size);
    text += form_.opening;
    for (const FileForm::Section& section : sections)
        text.append(section.head).append(section.bytes).append(section.tail);
    text += closing;
    return text;
}

FileForm::Section DrawingWriter::newSection(const std::string& name) const
{
    return {name, tag(0, "SECTION") + tag(2, name), {}, tag(0, "ENDSEC")};
}

/// Adds the sections that the file does not have and that hold something, each behind the one that
/// it follows.
void DrawingWriter::addMissingSections(std::vector<FileForm::Section>& sections)
{
    std::size_t place = 0;
    for (const std::string name : kSectionOrder) {
        const auto there = std::ranges::find(sections, name, &FileForm::Section::name);
        if (there != sections.end()) {
            place = static_cast<std::size_t>(there - sections.begin()) + 1;
            continue;
        }
        FileForm::Section section = newSection(name);
        section.bytes = sectionBody(name);
        if (!section.bytes.empty())
            sections.insert(sections.begin() + static_cast<std::ptrdiff_t>(place++),
                            std::move(section));
    }
}

void DrawingWriter::updateHeader(std::vector<FileForm::Section>& sections) const
{
    const DrawingHeader header = headerToWrite();
    auto section = std::ranges::find(sections, "HEADER", &FileForm::Section::name);
    if (section == sections.end()) {
        if (header.variables().empty())
            return;
        section = sections.insert(sections.begin(), newSection("HEADER"));
    }
    section->head = headerWritten(section->head, header, lineEnd_);
}

std::string DrawingWriter::sectionBody(const std::string& name)
{
    if (name == "TABLES")
        return tables();
    if (name == "BLOCKS")
        return blocks();
    if (name == "ENTITIES")
        return entities();
    if (name == "OBJECTS")
        return objects();
    return {};
}

/// The header with the seed of the next handle behind every handle that was used.
DrawingHeader DrawingWriter::headerToWrite() const
{
    DrawingHeader header = contents_.header;
    if (!form_.isFromFile() && !header.has("$ACADVER"))
        header.setText("$ACADVER", L"AC1021", 1); // the first version whose texts are UTF-8
    if (form_.isFromFile() && !header.has("$HANDSEED"))
        return header;
    const std::uint64_t seed = std::min(std::max(form_.lastHandle, lastHandle_) + 1, kLastHandle);
    const auto there =
        parseHandle(header.encoding().encode(header.text("$HANDSEED", L""))).value_or(0);
    if (there < seed)
        header.setText("$HANDSEED", platform::fromUtf8(formatHandle(seed)), 5);
    return header;
}

/// The tags with the handle of the object, which they may have already.
std::string DrawingWriter::given(KdDbObjectId id, std::string_view bytes)
{
    lastHandle_ = std::max(lastHandle_, id.handle().value());
    return withHandle(bytes, id.handle().value(), lineEnd_);
}

/// The tags of what frames objects, with a handle where they have none: no object has an id for it.
std::string DrawingWriter::withOwnHandle(const std::string& frame)
{
    if (TagList(frame).handleTag() != TagList::kNone)
        return frame;
    while (isUsed(contents_, nextHandle_))
        nextHandle_ = handleBehind(nextHandle_);
    const std::uint64_t handle = std::exchange(nextHandle_, handleBehind(nextHandle_));
    lastHandle_ = std::max(lastHandle_, handle);
    return withHandle(frame, handle, lineEnd_);
}

std::string DrawingWriter::tables()
{
    std::string text;
    std::set<TableKind> done;
    for (const FileForm::Table& table : form_.tables) {
        const auto kind = tableKindNamed(table.name);
        text += kind ? tableText(table, *kind) : table.head + table.bytes + table.tail;
        if (kind)
            done.insert(*kind);
    }
    for (const TableKind kind : kTableOrder) {
        if (!done.contains(kind))
            text += newTableText(kind);
    }
    return text;
}

/// A table that the file does not have; nothing when it has no records to write.
std::string DrawingWriter::newTableText(TableKind kind)
{
    if (kind == TableKind::block && !writesBlockRecords())
        return {};
    const std::string head =
        tag(0, "TABLE") + tag(2, kindOfTable(kind).fileName) +
        (markerPrefix_ ? tag(330, "0") : std::string()) + marker("SymbolTable") + tag(70, "0") +
        (kind == TableKind::dimStyle ? marker("DimStyleTable") : std::string());
    const FileForm::Table table = {
        std::string(kindOfTable(kind).fileName), head, {}, tag(0, "ENDTAB")};
    return writesEverything_ || records(kind).count > 0 ? tableText(table, kind) : std::string();
}

std::string DrawingWriter::tableText(const FileForm::Table& table, TableKind kind)
{
    const Records written = records(kind);
    std::string head = given(contents_.table(kind), table.head);
    const TagList tags(head);
    const std::size_t counted = tags.find(70);
    if (written.added > 0 && counted != TagList::kNone &&
        parseWhole(tags[counted].value).value_or(0) < written.count)
        head = withValue(tags, counted, std::to_string(written.count), lineEnd_);
    return head + written.text + table.tail;
}

DrawingWriter::Records DrawingWriter::records(TableKind kind)
{
    Records written;
    auto* const table = ObjectAccess::live<KdDbSymbolTable>(contents_.table(kind));
    if (!table)
        return written;
    for (KdDbSymbolTableRecord* record : ObjectAccess::records(*table).each()) {
        if (!isWritten(*ObjectAccess::slot(*record)))
            continue;
        written.added += ObjectAccess::source(*record).empty();
        written.text += objectText(*record);
        ++written.count;
    }
    return written;
}

} // namespace korra
