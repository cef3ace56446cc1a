#pragma once

#include "form/encoding.h"
#include "kd/ge.h"

#include <string>
#include <string_view>
#include <vector>

namespace korra {

/// One value of a header variable as the file holds it.
struct HeaderValue {
    int code = 0;
    std::string text;

    friend bool operator==(const HeaderValue&, const HeaderValue&) = default;
};

/// The settings that a drawing carries, as its header section lists them.
///
/// What nobody asks for is kept in its place, as it was written. Names begin with "$". A variable
/// that is not there reads as the default given.
class DrawingHeader {
public:
    struct Variable {
        std::string name;
        std::vector<HeaderValue> values;

        friend bool operator==(const Variable&, const Variable&) = default;
    };

    double real(std::string_view name, double byDefault) const;
    int integer(std::string_view name, int byDefault) const;
    std::wstring text(std::string_view name, std::wstring_view byDefault) const;
    KdGePoint3d point(std::string_view name, const KdGePoint3d& byDefault) const;

    bool has(std::string_view name) const { return find(name) != nullptr; }

    /// A setter writes the variable in its place, or at the end; `code` is used for a new one.
    void setReal(std::string_view name, double value, int code);
    void setInteger(std::string_view name, int value, int code);
    void setText(std::string_view name, std::wstring_view value, int code);
    void setPoint(std::string_view name, const KdGePoint2d& value);
    void setPoint(std::string_view name, const KdGePoint3d& value);

    const std::vector<Variable>& variables() const { return variables_; }

    void append(Variable variable) { variables_.push_back(std::move(variable)); }

    const TextEncoding& encoding() const { return encoding_; }

    void setEncoding(TextEncoding encoding) { encoding_ = std::move(encoding); }

private:
    const Variable* find(std::string_view name) const;
    Variable& findOrAppend(std::string_view name);
    void setCoordinate(std::string_view name, int code, double value);

    std::vector<Variable> variables_;
    TextEncoding encoding_;
};

} // namespace korra
