#include "entities/text_layout.h"
#include "gi/mtext_lines.h"
#include "gi/text_codes.h"
#include "objects/object_access.h"

#include <algorithm>
#include <utility>

namespace korra {

/// The lines of a multiline text with their measures.
class MTextLayout {
public:
    explicit MTextLayout(const KdDbMText& text);

    MTextSize size() const;
    std::vector<TextRun> runs() const;
    std::vector<std::unique_ptr<KdDbText>> newTexts() const;

private:
    /// A line that shows something, and where its base line begins.
    struct PlacedLine {
        const std::wstring& text;
        double width;
        KdGeMatrix3d toBlock;
    };

    std::vector<PlacedLine> placedLines() const;
    double widthOf(std::wstring_view line) const;
    KdGeMatrix3d textToBlock() const;
    double lineAdvance() const;

    const KdDbMText& text_;
    double widthFactor_ = 1.0;
    double oblique_ = 0.0;
    std::vector<std::wstring> lines_;
};

MTextLayout::MTextLayout(const KdDbMText& text) : text_(text)
{
    if (const auto* const style = ObjectAccess::live<KdDbTextStyleTableRecord>(text.textStyle())) {
        widthFactor_ = style->xScale() > 0.0 ? style->xScale() : 1.0;
        oblique_ = style->obliquingAngle();
    }
    for (const std::wstring& paragraph : readParagraphs(text.contents())) {
        const auto pieces = wrapped(paragraph, text.width(),
                                    [this](std::wstring_view piece) { return widthOf(piece); });
        lines_.insert(lines_.end(), pieces.begin(), pieces.end());
    }
}

double MTextLayout::widthOf(std::wstring_view line) const
{
    return textWidth(line, text_.textStyle(), text_.textHeight(), widthFactor_);
}

/// Base lines of single-spaced text lie five thirds of its height apart.
double MTextLayout::lineAdvance() const
{
    return text_.textHeight() * 5.0 / 3.0 * text_.lineSpacing_;
}

MTextSize MTextLayout::size() const
{
    MTextSize size;
    const bool isEmpty = std::ranges::all_of(lines_, &std::wstring::empty);
    if (isEmpty)
        return size;
    for (const std::wstring& line : lines_)
        size.width = std::max(size.width, widthOf(line));
    size.height = text_.textHeight() + lineAdvance() * static_cast<double>(lines_.size() - 1);
    return size;
}

/// From coordinates with the attachment point as origin and x along the lines.
KdGeMatrix3d MTextLayout::textToBlock() const
{
    const KdGeVector3d x = text_.direction_.normal();
    KdGeMatrix3d matrix;
    const KdGeVector3d normal = text_.place_.normal();
    matrix.setCoordSystem(text_.location_, x, normal.crossProduct(x), normal);
    return matrix;
}

std::vector<MTextLayout::PlacedLine> MTextLayout::placedLines() const
{
    const KdGeMatrix3d toBlock = textToBlock();
    const int place = std::clamp<int>(text_.attachment(), 1, 9) - 1;
    const int column = place % 3;
    const int row = place / 3;
    double baseLine = size().height * row / 2.0 - text_.textHeight();
    std::vector<PlacedLine> placed;
    for (const std::wstring& line : lines_) {
        const double width = widthOf(line);
        if (!line.empty()) {
            const KdGeVector3d offset(-width * column / 2.0, baseLine, 0.0);
            placed.push_back({line, width, toBlock * KdGeMatrix3d::translation(offset)});
        }
        baseLine -= lineAdvance();
    }
    return placed;
}

std::vector<TextRun> MTextLayout::runs() const
{
    const KdGeMatrix3d shape = letterShape(oblique_, widthFactor_);
    std::vector<TextRun> runs;
    for (const PlacedLine& line : placedLines())
        runs.push_back({line.text, text_.textStyle(), text_.textHeight(), line.width / widthFactor_,
                        line.toBlock * shape});
    return runs;
}

std::vector<std::unique_ptr<KdDbText>> MTextLayout::newTexts() const
{
    std::vector<std::unique_ptr<KdDbText>> texts;
    for (const PlacedLine& line : placedLines()) {
        auto text = std::make_unique<KdDbText>(
            KdGePoint3d::kOrigin, withControlCodes(line.text).c_str(), text_.textHeight());
        text->textStyle_ = text_.textStyle();
        text->widthFactor_ = widthFactor_;
        text->oblique_ = oblique_;
        text->moveBySimilarity(line.toBlock);
        text->alignment_ = KdGePoint3d::kOrigin; // not aligned to any point
        texts.push_back(std::move(text));
    }
    return texts;
}

std::vector<TextRun> layOutMText(const KdDbMText& text)
{
    return MTextLayout(text).runs();
}

std::vector<std::unique_ptr<KdDbText>> newLinesOf(const KdDbMText& text)
{
    return MTextLayout(text).newTexts();
}

MTextSize measureMText(const KdDbMText& text)
{
    return MTextLayout(text).size();
}

} // namespace korra
