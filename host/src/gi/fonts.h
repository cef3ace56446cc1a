#pragma once

#include <memory>
#include <string>

namespace korra {

/// A font face with its measures, in heights of its capitals.
///
/// The height of capitals is measured from the outline of "H": fonts' own tables often lack it.
/// Advances are the unhinted ones.
class Font {
public:
    /// @param file, face  of a scalable font; one that cannot be read has every glyph a square
    Font(std::string file, int face);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    /// The file, UTF-8, and the index of the face in it: enough to draw with the same font.
    const std::string& file() const { return file_; }

    int face() const { return face_; }

    /// From one character to the next; of one that the font lacks, its sign for that.
    double advance(wchar_t character) const;

    /// How far letters reach below the base line, measured from the outline of "p".
    double descent() const;

    /// Height of the em square, to scale a drawing canvas's font size by.
    double emSize() const;

private:
    struct Face;

    std::string file_;
    int face_;
    std::unique_ptr<Face> data_;
};

/// The font that a name of an installed font means (findInstalledFont), opened once and kept.
const Font& installedFont(const std::wstring& name);

} // namespace korra
