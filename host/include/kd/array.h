#pragma once

#include <algorithm>
#include <vector>

/// The host's growable array: a logical length over storage that grows as needed.
///
/// Indexes are `int`; an index outside the array is undefined, as in the host.
template <class T>
class KdArray {
public:
    KdArray() = default;

    /// @param physicalLength  elements to reserve
    /// @param growLength      kept for the host's signature; storage grows geometrically
    explicit KdArray(int physicalLength, int growLength = 8)
    {
        static_cast<void>(growLength);
        items_.reserve(static_cast<std::size_t>(physicalLength));
    }

    int length() const { return static_cast<int>(items_.size()); }

    bool isEmpty() const { return items_.empty(); }

    T& at(int index) { return items_[static_cast<std::size_t>(index)]; }

    const T& at(int index) const { return items_[static_cast<std::size_t>(index)]; }

    T& operator[](int index) { return at(index); }

    const T& operator[](int index) const { return at(index); }

    T& last() { return items_.back(); }

    const T& last() const { return items_.back(); }

    /// Appends a value. @return its index
    int append(const T& value)
    {
        items_.push_back(value);
        return length() - 1;
    }

    KdArray& append(const KdArray& other)
    {
        items_.insert(items_.end(), other.items_.begin(), other.items_.end());
        return *this;
    }

    /// Inserts a value before the element at `index`; `length()` appends.
    KdArray& insertAt(int index, const T& value)
    {
        items_.insert(items_.begin() + index, value);
        return *this;
    }

    KdArray& removeAt(int index)
    {
        items_.erase(items_.begin() + index);
        return *this;
    }

    KdArray& removeAll()
    {
        items_.clear();
        return *this;
    }

    KdArray& setLogicalLength(int length)
    {
        items_.resize(static_cast<std::size_t>(length));
        return *this;
    }

    /// Looks for a value from `start` on; `foundAt` is written only when it is there.
    bool find(const T& value, int& foundAt, int start = 0) const
    {
        const auto found = std::find(items_.begin() + start, items_.end(), value);
        if (found == items_.end())
            return false;
        foundAt = static_cast<int>(found - items_.begin());
        return true;
    }

    bool contains(const T& value) const
    {
        int ignored = 0;
        return find(value, ignored);
    }

    auto begin() { return items_.begin(); }

    auto end() { return items_.end(); }

    auto begin() const { return items_.begin(); }

    auto end() const { return items_.end(); }

    friend bool operator==(const KdArray& left, const KdArray& right) = default;

private:
    std::vector<T> items_;
};
