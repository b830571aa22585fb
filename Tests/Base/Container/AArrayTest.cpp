#include "Base/Container/AArray.h"

#include "Base/Container/Witness.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::Witness;
using Quern::AArray;

TEST(AArray, DeletesWhatItOwns) {
    int alive = 0;
    Witness kept(&alive);
    {
        AArray array;
        array.Add(&kept, false);
        array.Add(new Witness(&alive), true);
        array.Add(kept);  // a copy
        EXPECT_EQ(alive, 3);
        array.RemoveLastObject();
        EXPECT_EQ(alive, 2);
        array.RemoveFirstObject();
        EXPECT_EQ(alive, 2);
        array.Add(&kept, false);
        array.RemoveAll();
        EXPECT_EQ(alive, 1);
        array.Add(new Witness(&alive), true);
    }
    EXPECT_EQ(alive, 1);
}

TEST(AArray, CopiesAreDeepAndOwn) {
    int alive = 0;
    const Witness kept(&alive);
    AArray array;
    array.Add(&kept, false);
    array.Add("text");
    array.Add(7);
    AArray nested;
    nested.Add("inner");
    array.Add(nested);
    {
        AArray copy(array);
        EXPECT_EQ(alive, 2);
        EXPECT_TRUE(copy[0]->IsOwned());
        EXPECT_NE(copy[1], array[1]);
        EXPECT_TRUE(copy[1]->IsEqual(array[1]));
        EXPECT_STREQ(static_cast<AArray*>(copy[3])->FirstCString(), "inner");
        copy = array;
        EXPECT_EQ(alive, 2);
        copy.Add(&copy);
        EXPECT_EQ(copy.Count(), 8);
        EXPECT_EQ(alive, 3);
        const AArray& self = copy;
        copy = self;
        EXPECT_EQ(copy.Count(), 8);
        EXPECT_FALSE(copy.IsEqual(&array));
        EXPECT_TRUE(copy.IsEqual(&self));
        EXPECT_EQ(AArray(static_cast<const AArray*>(nullptr)).Count(), 0);
    }
    EXPECT_EQ(alive, 1);
}

TEST(AArray, OutOfRangeIsNull) {
    AArray array;
    array.Add(static_cast<const Quern::AObject*>(nullptr), true);
    array.Add(static_cast<const char*>(nullptr));
    array.Add(static_cast<const AArray*>(nullptr));
    EXPECT_EQ(array.Count(), 0);
    EXPECT_EQ(array.LastCString(), nullptr);
    array.RemoveLastObject();
    array.Add("a");
    array.Add("b");
    array.RemoveObjectAtIndex(-1);
    array.RemoveObjectAtIndex(2);
    EXPECT_EQ(array.Count(), 2);
    EXPECT_EQ(array.ObjectAtIndex(-1), nullptr);
    EXPECT_EQ(array[2], nullptr);
    EXPECT_STREQ(array.LastCString(), "b");
}

}  // namespace
