#include "platform/com_ref.h"

#include <gtest/gtest.h>

namespace varnelo {
namespace {

// Counts like a COM object, but stays alive for the test to look at.
struct Counted {
    int references = 0;
    int AddRef() { return ++references; }
    int Release() { return --references; }
};

// As a COM function hands an object out: with a reference for the caller.
void handOut(Counted& object, Counted** out) {
    object.AddRef();
    *out = &object;
}

TEST(ComRef, HoldsOneReferenceForItsLife) {
    Counted object;
    {
        const ComRef<Counted> reference(&object);
        EXPECT_EQ(object.references, 1);
        EXPECT_EQ(reference.get(), &object);
        EXPECT_TRUE(reference);
    }
    EXPECT_EQ(object.references, 0);
}

TEST(ComRef, CopyAddsAReferenceAndMoveDoesNot) {
    Counted object;
    ComRef<Counted> first(&object);
    ComRef<Counted> second = first;
    EXPECT_EQ(object.references, 2);
    ComRef<Counted> third = std::move(first);
    EXPECT_EQ(object.references, 2);
    EXPECT_FALSE(first);
    EXPECT_EQ(third, second);
}

TEST(ComRef, AttachTakesTheReferenceThatTheCallerHas) {
    Counted object;
    object.AddRef();
    ComRef<Counted> reference;
    reference.attach(&object);
    EXPECT_EQ(object.references, 1);
    reference.reset();
    EXPECT_EQ(object.references, 0);
}

TEST(ComRef, DetachLeavesTheReferenceToTheCaller) {
    Counted object;
    ComRef<Counted> reference(&object);
    EXPECT_EQ(reference.detach(), &object);
    EXPECT_FALSE(reference);
    EXPECT_EQ(object.references, 1);
}

TEST(ComRef, PutReleasesWhatIsHeldBeforeItIsFilled) {
    Counted before;
    Counted after;
    ComRef<Counted> reference(&before);
    handOut(after, reference.put());
    EXPECT_EQ(before.references, 0);
    EXPECT_EQ(after.references, 1);
    EXPECT_EQ(reference.get(), &after);
}

TEST(ComRef, AssignmentReplacesTheReference) {
    Counted first;
    Counted second;
    ComRef<Counted> reference(&first);
    reference = ComRef<Counted>(&second);
    EXPECT_EQ(first.references, 0);
    EXPECT_EQ(second.references, 1);
    reference = nullptr;
    EXPECT_EQ(second.references, 0);
}

TEST(ComRef, AssignmentToItselfKeepsTheReference) {
    Counted object;
    ComRef<Counted> reference(&object);
    ComRef<Counted>& same = reference;
    reference = same;
    EXPECT_EQ(object.references, 1);
    reference = std::move(same);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(reference.get(), &object);
}

TEST(ComRef, AttachOfTheSameObjectBalances) {
    Counted object;
    ComRef<Counted> reference(&object);
    object.AddRef();
    reference.attach(&object);
    EXPECT_EQ(object.references, 1);
}

}  // namespace
}  // namespace varnelo
