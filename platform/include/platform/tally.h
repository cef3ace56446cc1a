#pragma once

#include <string>
#include <vector>

namespace platform {

/// Counts one kind of thing that must be given back: iterators, host strings, locks.
///
/// Each kind is one Tally of static lifetime; the audit lists every kind that is not back at zero.
class Tally {
public:
    /// @param what  the thing in words, singular, as the audit prints it: "result buffer"
    explicit Tally(const char* what);
    ~Tally();
    Tally(const Tally&) = delete;
    Tally& operator=(const Tally&) = delete;

    void add() { ++count_; }

    void remove() { --count_; }

    void reset() { count_ = 0; }

    long count() const { return count_; }

    const char* what() const { return what_; }

private:
    const char* what_;
    long count_ = 0;
};

/// Every tally that is not at zero, in words: "2 result buffers".
std::vector<std::string> leftovers();

/// A member or base that counts the object it lies in for as long as that object lives.
class Tallied {
public:
    explicit Tallied(Tally& tally) : tally_(&tally) { tally_->add(); }

    Tallied(const Tallied& other) : tally_(other.tally_) { tally_->add(); }

    Tallied& operator=(const Tallied&) { return *this; }

    ~Tallied() { tally_->remove(); }

private:
    Tally* tally_;
};

} // namespace platform
