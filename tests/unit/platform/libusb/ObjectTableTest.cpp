#include <gtest/gtest.h>

#include <memory>

#include "platform/libusb/RegistryObjects.h"

namespace {

using platform::EntryIterator;
using platform::io_object_t;
using platform::ObjectReference;
using platform::ObjectTable;
using platform::RegistryObject;

class Thing : public RegistryObject {};
class OtherThing : public RegistryObject {};

class ObjectTableTest : public testing::Test {
 protected:
  io_object_t addThing() {
    const auto thing = std::make_shared<Thing>();
    mThing = thing;
    return mTable->add(thing);
  }

  bool isThere() const { return !mThing.expired(); }

  std::shared_ptr<ObjectTable> mTable = std::make_shared<ObjectTable>();
  std::weak_ptr<Thing> mThing;
};

TEST_F(ObjectTableTest, ObjectIsThereUntilItsLastReferenceIsReleased) {
  const io_object_t number = addThing();
  EXPECT_NE(number, 0u);
  mTable->retain(number);
  mTable->release(number);
  EXPECT_NE(mTable->find<Thing>(number), nullptr);
  mTable->release(number);
  EXPECT_EQ(mTable->find<Thing>(number), nullptr);
  EXPECT_FALSE(isThere());
}

TEST_F(ObjectTableTest, NumberOfAnObjectThatIsThereIsNotUsedAgain) {
  const io_object_t number = addThing();
  const io_object_t other = addThing();
  EXPECT_NE(number, other);
  mTable->release(other);
  EXPECT_NE(addThing(), number);
}

TEST_F(ObjectTableTest, UnknownNumbersAreIgnored) {
  mTable->retain(0);
  mTable->release(0);
  const io_object_t number = addThing();
  mTable->release(number);
  mTable->release(number);
  mTable->retain(number);
  EXPECT_EQ(mTable->find<Thing>(number), nullptr);
}

TEST_F(ObjectTableTest, ObjectOfAnotherKindIsNotFound) {
  EXPECT_EQ(mTable->find<OtherThing>(addThing()), nullptr);
}

TEST_F(ObjectTableTest, ReferenceIsGivenBackAtItsEnd) {
  const io_object_t number = addThing();
  {
    const ObjectReference reference = ObjectReference::retain(mTable, number);
    mTable->release(number);
    EXPECT_EQ(reference.number(), number);
    EXPECT_TRUE(isThere());
  }
  EXPECT_FALSE(isThere());
}

TEST_F(ObjectTableTest, ReferenceThatIsPassedOnIsNotGivenBack) {
  const io_object_t number = addThing();
  EXPECT_EQ(ObjectReference::adopt(mTable, number).take(), number);
  EXPECT_TRUE(isThere());
  ObjectReference first = ObjectReference::adopt(mTable, number);
  { const ObjectReference second = std::move(first); }
  EXPECT_FALSE(isThere());
}

TEST_F(ObjectTableTest, ReferenceMayOutliveTheTable) {
  const ObjectReference reference = ObjectReference::adopt(mTable, addThing());
  mTable.reset();
  EXPECT_FALSE(isThere());
}

TEST_F(ObjectTableTest, IteratorGivesItsReferencesAwayOneByOne) {
  const io_object_t first = addThing();
  const io_object_t second = addThing();
  EntryIterator iterator;
  iterator.add(ObjectReference::adopt(mTable, first));
  iterator.add(ObjectReference::adopt(mTable, second));
  EXPECT_EQ(iterator.next(), first);
  EXPECT_EQ(iterator.next(), second);
  EXPECT_EQ(iterator.next(), 0u);
  EXPECT_TRUE(isThere());
}

TEST_F(ObjectTableTest, IteratorReleasesWhatNobodyHasTaken) {
  {
    EntryIterator iterator;
    iterator.add(ObjectReference::adopt(mTable, addThing()));
    EXPECT_TRUE(isThere());
  }
  EXPECT_FALSE(isThere());
}

// As the interfaces of a device go with its entry.
TEST_F(ObjectTableTest, ObjectMayReleaseOthersAsItGoes) {
  auto iterator = std::make_shared<EntryIterator>();
  iterator->add(ObjectReference::adopt(mTable, addThing()));
  mTable->release(mTable->add(std::move(iterator)));
  EXPECT_FALSE(isThere());
}

}  // namespace
