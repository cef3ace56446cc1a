#pragma once

#include "kd/resbuf.h"

#include <string_view>

namespace korra {

/// What the value of a result buffer is; the type code decides.
enum class ResbufKind { unknown, none, text, real, point, shortInteger, longInteger, name, binary };

/// The kind of a code of the list-processing interface or of a drawing file's group.
ResbufKind resbufKind(int type);

/// The host's own way to a node, past the gate: zero value, no successor, counted.
resbuf* newResbuf(int type);

/// The host's own way to a text that kdapi_free() or the node frees, past the gate; counted.
wchar_t* newHostString(std::wstring_view text);

/// A counted copy of bytes for a binary value.
char* newHostBytes(std::string_view bytes);

/// A list that grows at its end.
class ResbufBuilder {
public:
    ResbufBuilder() = default;

    ~ResbufBuilder() { kdutRelRb(first_); }

    ResbufBuilder(const ResbufBuilder&) = delete;
    ResbufBuilder& operator=(const ResbufBuilder&) = delete;

    /// A new last node with a zero value.
    resbuf& append(int type);

    /// Hands the list to the caller; null when it is empty.
    resbuf* release();

private:
    resbuf* first_ = nullptr;
    resbuf* last_ = nullptr;
};

} // namespace korra
