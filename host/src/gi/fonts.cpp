#include "gi/fonts.h"

#include "gi/installed_fonts.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BBOX_H
#include FT_OUTLINE_H

#include <unordered_map>

namespace korra {

namespace {

class FreeType {
public:
    FreeType() { usable_ = FT_Init_FreeType(&library_) == 0; }

    ~FreeType()
    {
        if (usable_)
            FT_Done_FreeType(library_);
    }

    FreeType(const FreeType&) = delete;
    FreeType& operator=(const FreeType&) = delete;

    FT_Face open(const std::string& file, int face) const
    {
        FT_Face opened = nullptr;
        if (!usable_ || FT_New_Face(library_, file.c_str(), face, &opened) != 0)
            return nullptr;
        if (FT_IS_SCALABLE(opened))
            return opened;
        FT_Done_Face(opened);
        return nullptr;
    }

private:
    FT_Library library_ = nullptr;
    bool usable_ = false;
};

const FreeType& freeType()
{
    static const FreeType library;
    return library;
}

FT_BBox outlineBox(FT_Face face, FT_ULong character)
{
    FT_BBox box{};
    if (FT_Load_Char(face, character, FT_LOAD_NO_SCALE) == 0)
        FT_Outline_Get_BBox(&face->glyph->outline, &box);
    return box;
}

} // namespace

struct Font::Face {
    FT_Face face = nullptr;
    double capitalHeight = 1.0; ///< font units
    double descent = 0.0;       ///< font units
    std::unordered_map<wchar_t, double> advances;

    ~Face()
    {
        if (face)
            FT_Done_Face(face);
    }
};

Font::Font(std::string file, int face)
    : file_(std::move(file)), face_(face), data_(std::make_unique<Face>())
{
    data_->face = freeType().open(file_, face);
    if (!data_->face)
        return;
    data_->capitalHeight = static_cast<double>(outlineBox(data_->face, 'H').yMax);
    if (data_->capitalHeight <= 0.0)
        data_->capitalHeight = static_cast<double>(data_->face->units_per_EM);
    data_->descent = -static_cast<double>(outlineBox(data_->face, 'p').yMin);
}

Font::~Font() = default;

double Font::advance(wchar_t character) const
{
    const auto [known, isNew] = data_->advances.try_emplace(character, 1.0);
    if (isNew && data_->face &&
        FT_Load_Char(data_->face, static_cast<FT_ULong>(character), FT_LOAD_NO_SCALE) == 0)
        known->second =
            static_cast<double>(data_->face->glyph->metrics.horiAdvance) / data_->capitalHeight;
    return known->second;
}

double Font::descent() const
{
    return data_->descent / data_->capitalHeight;
}

double Font::emSize() const
{
    return data_->face ? static_cast<double>(data_->face->units_per_EM) / data_->capitalHeight
                       : 1.0;
}

const Font& installedFont(const std::wstring& name)
{
    freeType(); // made before the fonts, so that it outlives them
    // Fonts stay open for good: what the machine has installed does not change under a drawing.
    static std::unordered_map<std::wstring, std::unique_ptr<Font>> fonts;
    const auto [known, isNew] = fonts.try_emplace(name);
    if (isNew) {
        const FontFile found = findInstalledFont(name);
        known->second = std::make_unique<Font>(found.file, found.face);
    }
    return *known->second;
}

} // namespace korra
