#include <gtest/gtest.h>

#include "platform/Events.h"

namespace {

using namespace platform;

class EventTest : public testing::Test {
 protected:
  Event mEvent{"FwDl"_4cc, 2};
};

TEST_F(EventTest, KnowsItsClassAndKind) {
  EXPECT_EQ(mEvent.eventClass(), 0x4677446Cu);
  EXPECT_EQ(mEvent.kind(), 2u);
}

TEST_F(EventTest, GivesAParameterBack) {
  mEvent.setParameter("----"_4cc, static_cast<void*>(this));
  void* object = nullptr;
  EXPECT_EQ(mEvent.getParameter("----"_4cc, object), noErr);
  EXPECT_EQ(object, this);
}

TEST_F(EventTest, LaterParameterReplacesOneOfTheSameName) {
  mEvent.setParameter("----"_4cc, ControlRef{1});
  mEvent.setParameter("----"_4cc, ControlRef{2});
  ControlRef control{};
  EXPECT_EQ(mEvent.getParameter("----"_4cc, control), noErr);
  EXPECT_EQ(control, ControlRef{2});
}

TEST_F(EventTest, MissingParameterLeavesTheValueAlone) {
  ControlRef control{7};
  EXPECT_EQ(mEvent.getParameter("----"_4cc, control), eventParameterNotFoundErr);
  EXPECT_EQ(control, ControlRef{7});
}

TEST_F(EventTest, ParameterOfAnotherTypeIsMissing) {
  mEvent.setParameter("----"_4cc, FloatRect{1, 2, 3, 4});
  void* object = nullptr;
  EXPECT_EQ(mEvent.getParameter("----"_4cc, object), eventParameterNotFoundErr);
  EXPECT_EQ(object, nullptr);
}

}  // namespace
