#pragma once

namespace varnelo {

// Joins the calling thread to a COM apartment for the life of the object, which therefore lives on that
// thread's stack, before everything that uses COM. A thread that is in an apartment of the other kind already
// stays there: entered() is false then and nothing is undone at the end. The host build has no COM: there
// it does nothing and entered() is true.
class ComApartment {
public:
    enum class Kind { Single, Multi };

    explicit ComApartment(Kind kind);
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment();

    bool entered() const { return joined; }

private:
    bool joined = false;
};

}  // namespace varnelo
