#pragma once

#include <utility>
#include <variant>

namespace korra {

/// A std::variant whose copy may find no memory.
///
/// The standard library of g++ 12 takes a variant of texts for one that always holds a value: when
/// the copy of a text throws, it destroys a value that was never made. Here the copy is made first
/// and then moved in.
template <class... Types>
class SoundVariant : public std::variant<Types...> {
    using Base = std::variant<Types...>;

public:
    using Base::Base;

    SoundVariant() = default;

    SoundVariant(const SoundVariant& other) : Base(copyOf(other)) {}

    SoundVariant(SoundVariant&&) noexcept = default;
    ~SoundVariant() = default;

    SoundVariant& operator=(const SoundVariant& other)
    {
        Base::operator=(copyOf(other));
        return *this;
    }

    SoundVariant& operator=(SoundVariant&&) noexcept = default;

private:
    static Base copyOf(const Base& other)
    {
        return std::visit(
            [](const auto& value) {
                return Base(std::in_place_type<std::decay_t<decltype(value)>>, value);
            },
            other);
    }
};

} // namespace korra
