#pragma once

#include "dxf/object_stream.h"
#include "dxf/tag_list.h"
#include "form/file_form.h"
#include "form/header.h"
#include "objects/object_access.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace korra {

/// Where in a file an object stands.
enum class FilePlace : unsigned char {
    table,
    record,   ///< of a table
    entities, ///< in the entities section: model space or a sheet
    block,    ///< in a block definition
    part,     ///< vertex or attribute of the entity before it
    objects   ///< in the objects section
};

/// An object of the file: made, named when it is a record, its fields not read yet.
struct ReadObject {
    static constexpr std::size_t kNone = ~std::size_t{0};

    std::unique_ptr<KdDbObject> object; ///< the tags are in its extras
    std::size_t line = 0;
    std::uint64_t handle = 0; ///< 0: the file gives none
    std::uint64_t owner = 0;
    std::size_t parent = kNone; ///< the table, block record or entity that it belongs to
    FilePlace place = FilePlace::objects;
    bool onSheet = false;
};

struct ReadBlock {
    std::size_t record = ReadObject::kNone;
    std::size_t line = 0;
    FileForm::BlockFrame frame;
};

/// What one pass over a file finds.
struct ReadFile {
    FileForm form; ///< without what is kept by object
    DrawingHeader header;
    std::vector<ReadObject> objects; ///< in the order of the file
    std::vector<ReadBlock> blocks;
    std::vector<std::pair<std::size_t, std::string>> sequenceEnds; ///< by entity
    std::size_t lineBehindEnd = 0; ///< where more than blanks stands behind EOF; else 0
};

/// Handles that were met: a bit each, which a file's many small ones share in few words.
class HandleSet {
public:
    /// @return false for one that was met before
    bool insert(std::uint64_t handle);

private:
    std::vector<bool> small_;
    std::unordered_set<std::uint64_t> large_;
};

/// Takes a drawing file apart in one pass.
class FileScanner {
public:
    /// @param text  of the whole file
    explicit FileScanner(std::string text);

    /// @throw DrawingError
    ReadFile scan();

private:
    void advance();
    [[noreturn]] void fail(const std::string& what) const;
    void expect(const char* type) const;
    bool atBoundary() const;

    void readClosing();
    void readSection();
    void readSectionBody(const std::string& name);
    void readVariables();
    void keepSectionBody();
    void readTables();
    void readTable();
    void readRecords(TableKind kind);
    void keepTable();
    std::size_t addTable(TableKind kind);
    void readRecord(TableKind kind, std::size_t table);
    void readBlockRecord(std::size_t table);
    void readBlocks();
    void readBlock();
    std::size_t recordOfBlock();
    void readEntities(FilePlace place, std::size_t parent);
    void readEntity(FilePlace place, std::size_t parent);
    void readMesh(std::size_t entity);
    void readParts(std::size_t entity, const char* type, bool areExpected);
    void readObjects();

    std::size_t add(std::unique_ptr<KdDbObject> object, FilePlace place, std::size_t parent);
    std::uint64_t handleHere() const;
    std::uint64_t noteHandle();
    std::wstring nameOfObject() const;

    ReadFile file_;
    ObjectStream stream_;
    RawObject object_; ///< the current one
    TagList tags_;     ///< its tags
    HandleSet handles_;
    std::uint64_t lastHandle_ = 0;
    std::unordered_set<std::string> sections_;              ///< understood ones that came
    std::unordered_map<std::wstring, std::size_t> records_; ///< of blocks, by folded name
    std::unordered_set<std::size_t> definedBlocks_;         ///< records that a BLOCK came for
};

} // namespace korra
