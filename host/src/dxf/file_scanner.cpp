#include "dxf/file_scanner.h"

#include "dxf/header_section.h"
#include "dxf/object_kinds.h"
#include "form/numbers.h"
#include "objects/record_names.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace korra {
namespace {

constexpr int kVariableCode = 9;

/// True for what is no text: old files end with a mark, and fill up their last sector.
bool isBlank(std::string_view bytes)
{
    constexpr std::string_view kBlanks("\0\t\n\r\x1A ", 6);
    return bytes.find_first_not_of(kBlanks) == std::string_view::npos;
}

bool isSectionKnown(std::string_view name)
{
    constexpr std::array<std::string_view, 5> kKnown = {"HEADER", "TABLES", "BLOCKS", "ENTITIES",
                                                        "OBJECTS"};
    return std::ranges::find(kKnown, name) != kKnown.end();
}

ReadFile withText(std::string text)
{
    ReadFile file;
    file.form.text = std::make_unique<const std::string>(std::move(text));
    return file;
}

} // namespace

bool HandleSet::insert(std::uint64_t handle)
{
    constexpr std::uint64_t kSmall = std::uint64_t{1} << 26; // eight megabytes of bits
    if (handle >= kSmall)
        return large_.insert(handle).second;
    if (handle >= small_.size())
        small_.resize(std::min(kSmall, 2 * handle + 1));
    const bool isNew = !small_[handle];
    small_[handle] = true;
    return isNew;
}

FileScanner::FileScanner(std::string text)
    : file_(withText(std::move(text))), stream_(*file_.form.text)
{
}

void FileScanner::advance()
{
    stream_.next(object_, tags_);
}

void FileScanner::fail(const std::string& what) const
{
    throw DrawingError{object_.line, what};
}

void FileScanner::expect(const char* type) const
{
    if (object_.type != type)
        fail(std::string(type) + " was expected, not " + shown(object_.type));
}

/// True for the words that frame lists of objects.
bool FileScanner::atBoundary() const
{
    constexpr std::array<std::string_view, 7> kFrame = {"SECTION", "ENDSEC", "TABLE", "ENDTAB",
                                                        "BLOCK",   "ENDBLK", "EOF"};
    return std::ranges::find(kFrame, object_.type) != kFrame.end();
}

ReadFile FileScanner::scan()
{
    file_.form.opening = stream_.opening();
    advance();
    do
        readSection();
    while (object_.type != "EOF");
    file_.form.crlf = stream_.endsLinesWithCrLf();
    file_.form.lastHandle = lastHandle_;
    readClosing();
    return std::move(file_);
}

void FileScanner::readClosing()
{
    const std::string_view rest = stream_.rest();
    if (!isBlank(rest))
        file_.lineBehindEnd = object_.line + 1;
    file_.form.closing = std::string(object_.bytes).append(rest);
}

void FileScanner::readSection()
{
    expect("SECTION");
    const std::string name(trimmed(tags_.valueOf(2)));
    if (name.empty())
        fail("a section has no name");
    if (isSectionKnown(name) && !sections_.insert(name).second)
        fail("the section " + name + " comes twice");
    file_.form.sections.push_back({name, std::string(object_.bytes), {}, {}});
    advance();
    readSectionBody(name);
    expect("ENDSEC");
    file_.form.sections.back().tail = object_.bytes;
    advance();
}

void FileScanner::readSectionBody(const std::string& name)
{
    if (name == "HEADER")
        readVariables();
    else if (name == "TABLES")
        readTables();
    else if (name == "BLOCKS")
        readBlocks();
    else if (name == "ENTITIES")
        readEntities(FilePlace::entities, ReadObject::kNone);
    else if (name == "OBJECTS")
        readObjects();
    else
        keepSectionBody();
}

void FileScanner::readVariables()
{
    std::string& section = file_.form.sections.back().head;
    const bool goesOn = object_.type == "ENDSEC" && tags_.find(kVariableCode) != TagList::kNone;
    if (goesOn) { // some programs end the section in its midst, too
        section += object_.bytes;
        advance();
    }
    file_.header = readHeader(TagList(section), stream_.beginsWithByteOrderMark());
}

void FileScanner::keepSectionBody()
{
    for (; !atBoundary(); advance())
        file_.form.sections.back().bytes += object_.bytes;
}

void FileScanner::readTables()
{
    while (object_.type == "TABLE")
        readTable();
}

void FileScanner::readTable()
{
    const std::string name(trimmed(tags_.valueOf(2)));
    file_.form.tables.push_back({name, std::string(object_.bytes), {}, {}});
    if (const auto kind = tableKindNamed(name))
        readRecords(*kind);
    else
        keepTable();
    expect("ENDTAB");
    file_.form.tables.back().tail = object_.bytes;
    advance();
}

void FileScanner::keepTable()
{
    noteHandle();
    for (advance(); !atBoundary(); advance()) {
        noteHandle();
        file_.form.tables.back().bytes += object_.bytes;
    }
}

void FileScanner::readRecords(TableKind kind)
{
    const std::size_t table = addTable(kind);
    for (advance(); !atBoundary(); advance()) {
        const std::string type(kindOfRecords(kind).fileName);
        if (object_.type != type)
            fail("the table " + type + " cannot hold " + shown(object_.type));
        if (kind == TableKind::block)
            readBlockRecord(table);
        else
            readRecord(kind, table);
    }
}

std::size_t FileScanner::addTable(TableKind kind)
{
    const std::string_view name = kindOfTable(kind).fileName;
    if (std::ranges::count(file_.form.tables, name, &FileForm::Table::name) > 1)
        fail("the table " + std::string(name) + " comes twice");
    const std::size_t table =
        add(newOfKind(kindOfTable(kind)), FilePlace::table, ReadObject::kNone);
    ObjectAccess::setSource(*file_.objects[table].object, {}); // kept in the form
    return table;
}

void FileScanner::readRecord(TableKind kind, std::size_t table)
{
    std::unique_ptr<KdDbObject> record = newOfKind(kindOfRecords(kind));
    ObjectAccess::setName(static_cast<KdDbSymbolTableRecord&>(*record), nameOfObject());
    add(std::move(record), FilePlace::record, table);
}

void FileScanner::readBlockRecord(std::size_t table)
{
    const auto known = records_.find(folded(nameOfObject()));
    const bool isDefined =
        known != records_.end() && file_.objects[known->second].parent == ReadObject::kNone;
    if (!isDefined) {
        readRecord(TableKind::block, table);
        records_.emplace(folded(nameOfObject()), file_.objects.size() - 1);
        return;
    }
    ReadObject& record = file_.objects[known->second]; // the blocks stand before the tables
    if (record.handle == 0 || record.handle != handleHere())
        record.handle = noteHandle();
    record.parent = table;
    ObjectAccess::setSource(*record.object, object_.bytes);
}

void FileScanner::readBlocks()
{
    while (object_.type == "BLOCK")
        readBlock();
}

/// The record of the block that begins; made where the file has none, as older files do.
std::size_t FileScanner::recordOfBlock()
{
    const std::wstring name = nameOfObject();
    const auto [place, isNew] = records_.emplace(folded(name), file_.objects.size());
    const bool isAnother = name.empty() && definedBlocks_.contains(place->second);
    if (isNew || isAnother) {
        place->second = file_.objects.size();
        auto record = std::make_unique<KdDbBlockTableRecord>();
        ObjectAccess::setName(*record, name);
        ReadObject& added = file_.objects.emplace_back();
        added.object = std::move(record);
        added.line = object_.line;
        added.handle = noteHandle();
        added.place = FilePlace::record;
    } else if (handleHere() != file_.objects[place->second].handle) {
        noteHandle();
    }
    return place->second;
}

void FileScanner::readBlock()
{
    const std::size_t record = recordOfBlock();
    if (!definedBlocks_.insert(record).second)
        fail("the block " + shown(trimmed(tags_.valueOf(2))) + " is defined twice");
    ReadBlock block{record, object_.line, {file_.blocks.size(), std::string(object_.bytes), {}}};
    advance();
    readEntities(FilePlace::block, record);
    expect("ENDBLK");
    noteHandle();
    block.frame.end = object_.bytes;
    file_.blocks.push_back(std::move(block));
    advance();
}

void FileScanner::readEntities(FilePlace place, std::size_t parent)
{
    while (!atBoundary())
        readEntity(place, parent);
}

void FileScanner::readEntity(FilePlace place, std::size_t parent)
{
    const std::size_t entity =
        add(newObject(Kind::Place::entity, object_.type, tags_), place, parent);
    const bool isPolyline = object_.type == "POLYLINE";
    const bool isReference = object_.type == "INSERT";
    const bool isMesh = isPolyline && isUnknown(*file_.objects[entity].object);
    const bool hasParts = isPolyline || parseWhole(tags_.valueOf(66)).value_or(0) != 0;
    advance();
    if (isMesh)
        readMesh(entity);
    else if (isPolyline || isReference)
        readParts(entity, isPolyline ? "VERTEX" : "ATTRIB", hasParts);
}

/// Vertices of a mesh are no objects of their own: they stay with the end of their sequence.
void FileScanner::readMesh(std::size_t entity)
{
    std::string vertices;
    for (; object_.type == "VERTEX"; advance()) {
        noteHandle();
        vertices += object_.bytes;
    }
    expect("SEQEND");
    noteHandle();
    file_.sequenceEnds.emplace_back(entity, vertices.append(object_.bytes));
    advance();
}

void FileScanner::readParts(std::size_t entity, const char* type, bool areExpected)
{
    for (; object_.type == type; advance()) {
        add(newObject(Kind::Place::entity, object_.type, tags_), FilePlace::part, entity);
        areExpected = true;
    }
    if (areExpected)
        expect("SEQEND");
    if (object_.type != "SEQEND")
        return;
    noteHandle();
    file_.sequenceEnds.emplace_back(entity, object_.bytes);
    advance();
}

void FileScanner::readObjects()
{
    for (; !atBoundary(); advance())
        add(newObject(Kind::Place::object, object_.type, tags_), FilePlace::objects,
            ReadObject::kNone);
}

std::size_t FileScanner::add(std::unique_ptr<KdDbObject> object, FilePlace place,
                             std::size_t parent)
{
    ObjectAccess::setSource(*object, object_.bytes);
    ReadObject& added = file_.objects.emplace_back();
    added.object = std::move(object);
    added.line = object_.line;
    added.handle = noteHandle();
    added.parent = parent;
    added.place = place;
    added.onSheet = parseWhole(tags_.valueOf(67)) == 1;
    if (const std::size_t owner = tags_.ownerTag(); owner != TagList::kNone)
        added.owner = parseHandle(tags_[owner].value).value_or(0);
    return file_.objects.size() - 1;
}

/// The handle of the current object; 0 where it has none.
std::uint64_t FileScanner::handleHere() const
{
    const std::size_t index = tags_.handleTag();
    if (index == TagList::kNone || trimmed(tags_[index].value).empty())
        return 0;
    const auto handle = parseHandle(tags_[index].value);
    if (!handle)
        throw DrawingError{object_.line + 2 * index,
                           "a handle was expected, not " + shown(tags_[index].value)};
    return *handle;
}

/// The handle of the current object; 0 where it has none of its own.
std::uint64_t FileScanner::noteHandle()
{
    const std::uint64_t handle = handleHere();
    if (handle != 0 && !handles_.insert(handle))
        return 0;
    lastHandle_ = std::max(lastHandle_, handle);
    return handle;
}

std::wstring FileScanner::nameOfObject() const
{
    return file_.header.encoding().decode(tags_.valueOf(2));
}

} // namespace korra
