#pragma once

#include "dxf/file_scanner.h"
#include "dxf/references.h"
#include "dxf/tag_reader.h"
#include "objects/contents.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace korra {

/// Builds a database from what a pass over a file found.
///
/// Objects get their places and handles first, then their fields: whatever they refer to is there
/// by then, wherever in the file it stands.
class DrawingAssembly {
public:
    /// @param contents  of an empty database; half filled after a failure
    DrawingAssembly(DatabaseContents& contents, ReadFile& file);

    /// @throw DrawingError
    void run();

private:
    void adoptObjects();
    void placeRecords();
    void keepForm();
    void placeEntities();
    KdDbBlockTableRecord& spaceOf(const ReadObject& read);
    void readFields();
    void readFieldsOf(std::size_t index);
    void readView(KdDbObject& viewport, std::string_view source, std::size_t line);
    void readBlockFields();
    void placeObjects();
    void bindLayouts();
    std::size_t lineOf(const KdDbBlockTableRecord& block) const;
    void complete();

    KdDbObject& object(std::size_t index) const { return *ObjectAccess::object(ids_[index]); }

    DatabaseContents& contents_;
    ReadFile& file_;
    std::vector<KdDbObjectId> ids_; ///< by the place in the file
    std::map<std::pair<std::uint64_t, bool>, KdDbBlockTableRecord*> spaces_; ///< by owner and 67
    std::optional<References> references_;
    std::optional<TagReader> reader_;
};

} // namespace korra
