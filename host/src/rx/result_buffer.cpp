#include "rx/result_buffer.h"

#include "platform/gate.h"
#include "platform/tally.h"

#include <algorithm>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <utility>

namespace korra {
namespace {

platform::Tally resultBuffers("result buffer");
platform::Tally hostStrings("host string");

struct CodeRange {
    int first;
    int last;
    ResbufKind kind;
};

/// Group codes as drawing files define them, then the codes of the list-processing interface.
constexpr CodeRange kCodeRanges[] = {
    {-5, -1, ResbufKind::name},
    {0, 9, ResbufKind::text},
    {10, 17, ResbufKind::point},
    {38, 59, ResbufKind::real},
    {60, 79, ResbufKind::shortInteger},
    {90, 99, ResbufKind::longInteger},
    {100, 109, ResbufKind::text},
    {110, 112, ResbufKind::point},
    {140, 149, ResbufKind::real},
    {170, 179, ResbufKind::shortInteger},
    {210, 210, ResbufKind::point},
    {270, 299, ResbufKind::shortInteger},
    {300, 309, ResbufKind::text},
    {310, 319, ResbufKind::binary},
    {320, 329, ResbufKind::text},
    {330, 369, ResbufKind::name},
    {370, 389, ResbufKind::shortInteger},
    {390, 399, ResbufKind::name},
    {400, 409, ResbufKind::shortInteger},
    {410, 419, ResbufKind::text},
    {420, 429, ResbufKind::longInteger},
    {430, 439, ResbufKind::text},
    {440, 459, ResbufKind::longInteger},
    {460, 469, ResbufKind::real},
    {470, 479, ResbufKind::text},
    {1000, 1003, ResbufKind::text},
    {1004, 1004, ResbufKind::binary},
    {1005, 1005, ResbufKind::text},
    {1010, 1013, ResbufKind::point},
    {1040, 1042, ResbufKind::real},
    {1060, 1070, ResbufKind::shortInteger},
    {1071, 1071, ResbufKind::longInteger},
    {RTNONE, RTNONE, ResbufKind::none},
    {RTREAL, RTREAL, ResbufKind::real},
    {RTPOINT, RTPOINT, ResbufKind::point},
    {RTSHORT, RTSHORT, ResbufKind::shortInteger},
    {RTSTR, RTSTR, ResbufKind::text},
    {RTENAME, RTPICKS, ResbufKind::name},
    {RT3DPOINT, RT3DPOINT, ResbufKind::point},
    {RTLONG, RTLONG, ResbufKind::longInteger},
    {RTLB, RTLE, ResbufKind::none},
};

/// Frees what a node holds beside itself.
void freeValue(resbuf& node)
{
    const ResbufKind kind = resbufKind(node.restype);
    if (kind == ResbufKind::text)
        kdapi_free(node.resval.rstring);
    else if (kind == ResbufKind::binary)
        kdapi_free(node.resval.rbinary.buf);
}

resbuf::Binary copyOf(const resbuf::Binary& bytes)
{
    const auto length = static_cast<std::size_t>(std::max<short>(bytes.clen, 0));
    return {bytes.clen, newHostBytes({bytes.buf, length})};
}

/// Takes the value of a node from an argument list.
void readValue(resbuf& node, std::va_list& arguments)
{
    switch (resbufKind(node.restype)) {
    case ResbufKind::text:
        if (const wchar_t* text = va_arg(arguments, const wchar_t*))
            node.resval.rstring = newHostString(text);
        break;
    case ResbufKind::real:
        node.resval.rreal = va_arg(arguments, double);
        break;
    case ResbufKind::point:
        std::copy_n(va_arg(arguments, const double*), 3, node.resval.rpoint);
        break;
    case ResbufKind::shortInteger:
        node.resval.rint = static_cast<short>(va_arg(arguments, int));
        break;
    case ResbufKind::longInteger:
        node.resval.rlong = va_arg(arguments, std::int32_t);
        break;
    case ResbufKind::name:
        std::copy_n(va_arg(arguments, const std::int64_t*), 2, node.resval.rlname);
        break;
    case ResbufKind::binary:
        node.resval.rbinary = copyOf(*va_arg(arguments, const resbuf::Binary*));
        break;
    case ResbufKind::none:
    case ResbufKind::unknown:
        break;
    }
}

} // namespace

ResbufKind resbufKind(int type)
{
    const auto* const range = std::ranges::find_if(kCodeRanges, [type](const CodeRange& candidate) {
        return type >= candidate.first && type <= candidate.last;
    });
    return range == std::end(kCodeRanges) ? ResbufKind::unknown : range->kind;
}

resbuf* newResbuf(int type)
{
    auto* const node = new resbuf{};
    node->restype = static_cast<short>(type);
    resultBuffers.add();
    return node;
}

wchar_t* newHostString(std::wstring_view text)
{
    auto* const copy = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    std::ranges::copy(text, copy);
    copy[text.size()] = L'\0';
    hostStrings.add();
    return copy;
}

char* newHostBytes(std::string_view bytes)
{
    auto* const copy = static_cast<char*>(std::malloc(bytes.size() + 1));
    std::ranges::copy(bytes, copy);
    copy[bytes.size()] = '\0';
    hostStrings.add();
    return copy;
}

resbuf& ResbufBuilder::append(int type)
{
    resbuf* node = newResbuf(type);
    (last_ ? last_->rbnext : first_) = node;
    last_ = node;
    return *node;
}

resbuf* ResbufBuilder::release()
{
    last_ = nullptr;
    return std::exchange(first_, nullptr);
}

namespace {

/// The list that its arguments describe; null for a code that is none.
resbuf* buildList(int code, std::va_list& arguments)
{
    ResbufBuilder list;
    while (code != 0 && code != RTNONE && resbufKind(code) != ResbufKind::unknown) {
        readValue(list.append(code), arguments);
        code = va_arg(arguments, int);
    }
    return code == 0 || code == RTNONE ? list.release() : nullptr;
}

} // namespace

} // namespace korra

int kdutRelRb(resbuf* list)
{
    return platform::gate("kdutRelRb").afterwards(RTERROR, [&] {
        while (list) {
            korra::freeValue(*list);
            delete std::exchange(list, list->rbnext);
            korra::resultBuffers.remove();
        }
        return RTNORM;
    });
}

resbuf* kdutBuildList(int type, ...)
{
    std::va_list arguments;
    va_start(arguments, type);
    resbuf* const list = platform::gate("kdutBuildList", type).guard(nullptr, [&] {
        return korra::buildList(type, arguments);
    });
    va_end(arguments);
    return list;
}

resbuf* kdutNewRb(int type)
{
    return platform::gate("kdutNewRb", type).guard(nullptr, [&] { return korra::newResbuf(type); });
}

wchar_t* kdapi_copyString(const wchar_t* text)
{
    return platform::gate("kdapi_copyString", text).guard(nullptr, [&] {
        return text ? korra::newHostString(text) : nullptr;
    });
}

void kdapi_free(void* pointer)
{
    if (!pointer)
        return;
    std::free(pointer);
    korra::hostStrings.remove();
}
