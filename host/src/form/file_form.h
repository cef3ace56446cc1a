#pragma once

#include "kd/db/ids.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace korra {

/// Parts of a drawing file that no class stands for, kept as they are.
///
/// Empty for a drawing that was made here. Bytes run from the code line of a tag to the end of a
/// value line and hold the comments (999) that stand between them.
struct FileForm {
    /// The whole file: what objects had as their tags lies in it. It stays where it is.
    std::unique_ptr<const std::string> text;

    bool crlf = false;
    std::string opening; ///< byte order mark and comments before the first section
    std::string closing; ///< the 0/EOF tag and what stands behind it

    /// Sections in the order of the file.
    struct Section {
        std::string name;
        std::string head;  ///< 0/SECTION and what follows up to the next 0: the variables of HEADER
        std::string bytes; ///< contents of a section that is not understood
        std::string tail;  ///< 0/ENDSEC
    };

    std::vector<Section> sections;

    /// Tables in the order of the tables section.
    struct Table {
        std::string name;
        std::string head;  ///< 0/TABLE up to the first record
        std::string bytes; ///< records of a table that is not understood
        std::string tail;  ///< 0/ENDTAB
    };

    std::vector<Table> tables;

    /// What frames a block definition, by its record.
    struct BlockFrame {
        std::size_t place = 0; ///< among the blocks of the file
        std::string begin;     ///< 0/BLOCK and its tags
        std::string end;       ///< 0/ENDBLK and its tags
    };

    std::unordered_map<KdDbObjectId, BlockFrame> blocks;

    /// The 0/SEQEND tags behind the vertices of a polyline or the attributes of a reference; behind
    /// a mesh also its vertices.
    std::unordered_map<KdDbObjectId, std::string> sequenceEnds;

    /// Objects of the file that were changed to make the drawing whole. That is not written as long
    /// as what was added with it need not be.
    std::unordered_set<KdDbObjectId> completed;

    std::uint64_t lastHandle = 0; ///< the greatest in the file

    /// ObjectSlot::index of the last object that reading made; what comes later is new.
    std::uint32_t lastReadIndex = 0;

    bool isFromFile() const { return !sections.empty(); }
};

} // namespace korra
