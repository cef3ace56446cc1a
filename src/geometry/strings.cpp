#include "orvex/strings.h"

#include <algorithm>

namespace {

constexpr const wchar_t* kUsualSeparator = L",";

} // namespace

void SplitString(CString text, CString separator, CStringArray& pieces, int keepEmpty)
{
    if (separator.IsEmpty())
        separator = kUsualSeparator;
    int start = 0;
    for (int end = text.Find(separator); end >= 0; end = text.Find(separator, start)) {
        if (end > start || keepEmpty)
            pieces.Add(text.Mid(start, end - start));
        start = end + separator.GetLength();
    }
    if (start < text.GetLength())
        pieces.Add(text.Mid(start));
}

void SplitterString(CString text, CStringArray& pieces)
{
    text.Trim();
    if (text.IsEmpty())
        pieces.Add(text);
    CStringArray parts;
    SplitString(text, L" ", parts, 0);
    for (INT_PTR i = 0; i < parts.GetSize(); ++i) {
        if (!parts[i].Trim().IsEmpty())
            pieces.Add(parts[i]);
    }
}

CString CombineString(CString separator, CStringArray& pieces)
{
    if (separator.IsEmpty())
        separator = kUsualSeparator;
    CString joined;
    for (INT_PTR i = 0; i < pieces.GetSize(); ++i) {
        if (i > 0)
            joined += separator;
        joined += pieces[i];
    }
    return joined;
}

namespace {

constexpr int kLongestLabel = 2;
constexpr int kLongestAlphabet = 255;

/// The label behind one of up to two characters.
CString labelAfter(const CString& label, const CString& alphabet)
{
    if (label.IsEmpty())
        return CString(alphabet[0]);
    const auto placeOf = [&](wchar_t character) { return std::max(alphabet.Find(character), 0); };
    const int last = alphabet.GetLength() - 1;
    const int first = placeOf(label[0]);
    if (label.GetLength() == 1)
        return first < last ? CString(alphabet[first + 1]) : CString(alphabet[0], 2);
    const int second = placeOf(label[1]);
    if (second < last)
        return CString(alphabet[first]) + alphabet[second + 1];
    if (first < last)
        return CString(alphabet[first + 1]) + alphabet[0];
    return CString(alphabet[0]);
}

} // namespace

CString getNewLabel(CString& label, CString alphabet)
{
    if (alphabet.IsEmpty())
        alphabet = L"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    if (label.GetLength() <= kLongestLabel && alphabet.GetLength() <= kLongestAlphabet)
        label = labelAfter(label, alphabet);
    return label;
}

namespace {

/// A number with up to six decimals, without zeros at its end.
CString numberText(double number)
{
    CString text;
    text.Format(L"%f", number);
    int last = text.GetLength() - 1;
    while (last >= 2 && text[last] == L'0')
        --last;
    return text.Left(text[last] == L'.' ? last : last + 1);
}

} // namespace

bool JudgeAndCalScale(const double& scale, CString& text)
{
    if (scale < 1.0)
        text = L"1:" + numberText(1.0 / scale);
    else if (scale > 1.0)
        text = numberText(scale) + L":1";
    else if (scale == 1.0) // it may be no number at all
        text = L"1:1";
    return true;
}

bool JudgeAndCalScale(const CString& text, double& scale)
{
    constexpr double kLeast = 1e-10;
    const int colon = text.Find(L':');
    if (colon < 0)
        return false;
    const double first = _wtof(text.Left(colon));
    if (first < kLeast)
        return false;
    const double second = _wtof(text.Mid(colon + 1));
    if (second < kLeast)
        return false;
    scale = first / second;
    return true;
}
