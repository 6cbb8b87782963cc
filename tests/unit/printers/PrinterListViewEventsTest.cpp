// What the view does when its control changes its size or goes.
#include <limits>
#include <utility>

#include "Log.h"
#include "PrinterListViewFixture.h"

namespace {

using namespace platform::literals;
using platform::ItemId;
using platform::OSStatus;

using Lines = std::vector<std::string>;
using Entries = std::vector<LogEntry>;

class PrinterListViewEventsTest : public PrinterListViewFixture {
 protected:
  const std::vector<CatchingEvents::Caught>& handlers() const { return doubles.events.handlers; }

  // The new width of a name column of `oldWidth`, after the control's width has changed.
  std::uint16_t widthAfter(std::uint16_t oldWidth, float from, float to) {
    list().columns["lcNm"_4cc] = oldWidth;
    const OSStatus status = doubles.screen().resize(control, {5, 6, from, 80}, {9, 9, to, 90});
    EXPECT_EQ(status, platform::noErr);
    return list().columns["lcNm"_4cc];
  }
};

// Resizing.

TEST_F(PrinterListViewEventsTest, NameColumnTakesTheWholeChangeOfWidth) {
  makeView();
  EXPECT_EQ(doubles.screen().resize(control, {0, 0, 400, 100}, {0, 0, 450, 300}), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"getNamedColumnWidth(PrinterSelectWindow/lPrn.0, lcNm)",
                   "setNamedColumnWidth(PrinterSelectWindow/lPrn.0, lcNm, 290)"}));
  EXPECT_EQ(takeEntries(), Entries{});
}

TEST_F(PrinterListViewEventsTest, ChangeOfWidthIsTruncatedTowardZero) {
  makeView();
  EXPECT_EQ(widthAfter(100, 400, 410.9f), 110);
  EXPECT_EQ(widthAfter(100, 410.9f, 400), 90);
  EXPECT_EQ(widthAfter(100, 400, 400.9f), 100);
  EXPECT_EQ(widthAfter(100, 400.9f, 400), 100);
}

TEST_F(PrinterListViewEventsTest, WidthWrapsAround) {
  makeView();
  EXPECT_EQ(widthAfter(100, 400, 299), 65535);
  EXPECT_EQ(widthAfter(65535, 400, 401), 0);
  EXPECT_EQ(widthAfter(100, 0, 65536), 100);
  EXPECT_EQ(widthAfter(100, 65536 * 3 + 7, 0), 93);
}

TEST_F(PrinterListViewEventsTest, BoundsOfAnySizeAreHarmless) {
  makeView();
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr float kMax = std::numeric_limits<float>::max();
  EXPECT_EQ(widthAfter(100, 0, kInfinity), 100);
  EXPECT_EQ(widthAfter(100, kInfinity, 0), 100);
  EXPECT_EQ(widthAfter(100, kInfinity, kInfinity), 100);
  EXPECT_EQ(widthAfter(100, 0, std::numeric_limits<float>::quiet_NaN()), 100);
  EXPECT_EQ(widthAfter(100, 0, kMax), 100);
  EXPECT_EQ(widthAfter(100, kMax, -kMax), 100);
  EXPECT_EQ(widthAfter(100, 0, 4294967296.0f + 512.0f), 612);
}

TEST_F(PrinterListViewEventsTest, FailedStepOfAResizeIsNamed) {
  makeView();
  const std::pair<const char*, const char*> steps[] = {
      {"getNamedColumnWidth", "GetDataBrowserTableViewNamedColumnWidth"},
      {"setNamedColumnWidth", "SetDataBrowserTableViewNamedColumnWidth"},
  };
  for (const auto& [call, message] : steps) {
    doubles.toolkit.script().answerNext(call, -50);
    EXPECT_EQ(doubles.screen().resize(control, {}, {}), -9874);
    EXPECT_EQ(
        takeEntries(),
        (Entries{{3, std::string(message) + " <status=-50 => paramErr; desc: bad parameter>"}}));
  }
}

TEST_F(PrinterListViewEventsTest, MissingParameterOfAResizeIsNamed) {
  makeView();
  doubles.log.statuses().define(-9870, "eventParameterNotFoundErr", "no such parameter");
  const std::string suffix =
      " <status=-9870 => eventParameterNotFoundErr; desc: no such parameter>";
  platform::Event event("cntl"_4cc, 154);
  EXPECT_EQ(doubles.events.send(control, event), -9874);
  event.setParameter("----"_4cc, control);
  EXPECT_EQ(doubles.events.send(control, event), -9874);
  event.setParameter("orct"_4cc, platform::FloatRect{});
  EXPECT_EQ(doubles.events.send(control, event), -9874);
  event.setParameter("crct"_4cc, platform::FloatRect{});
  EXPECT_EQ(doubles.events.send(control, event), 0);
  EXPECT_EQ(takeEntries(), (Entries{{3, "GetEventParameter(kEventParamDirectObject)" + suffix},
                                    {3, "GetEventParameter(kEventParamOriginalBounds)" + suffix},
                                    {3, "GetEventParameter(kEventParamCurrentBounds)" + suffix}}));
}

TEST_F(PrinterListViewEventsTest, ResizeHandlerHasNoUserDataAndTheDisposeHandlerTheView) {
  makeView();
  ASSERT_EQ(handlers().size(), 2u);
  EXPECT_EQ(handlers()[0].userData, nullptr);
  EXPECT_EQ(handlers()[1].userData, &*view);
}

TEST_F(PrinterListViewEventsTest, UnexpectedEventKindIsLoggedInDecimal) {
  makeView();
  Log<3>() << std::hex;
  EXPECT_EQ(handlers()[0](platform::Event("cntl"_4cc, 155)), -9874);
  EXPECT_EQ(takeEntries(), (Entries{{3, "Unexpected event 155"}}));
}

TEST_F(PrinterListViewEventsTest, DisposeWithoutViewIsNotHandled) {
  makeView();
  EXPECT_EQ(handlers()[1].withoutUserData(platform::Event("cntl"_4cc, 1001)), -9874);
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(PrinterListViewEventsTest, DisposeTakesTheCallbacksFromTheControl) {
  makeView();
  EXPECT_EQ(handlers()[1](platform::Event("cntl"_4cc, 1001)), 0);
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"initDataBrowserCallbacks()",
                   "setDataBrowserCallbacks(PrinterSelectWindow/lPrn.0, none)"}));
}

TEST_F(PrinterListViewEventsTest, WindowThatGoesFirstLeavesTheViewUsable) {
  makeView();
  add("A");
  doubles.toolkit.disposeWindow(window);
  EXPECT_EQ(doubles.takeToolkitCalls().back(),
            "setDataBrowserCallbacks(PrinterSelectWindow/lPrn.0, none)");
  add("B");
  NamedService service("A");
  view->removeBonjourPrinter(&service);
  EXPECT_EQ(view->getListSelection(), 0u);
  view.reset();
}

}  // namespace
