#include <stdexcept>

#include "Log.h"
#include "PrinterListView.h"
#include "PrinterListViewFixture.h"

namespace {

using namespace platform::literals;
using platform::ItemId;
using platform::OSStatus;

using Lines = std::vector<std::string>;
using Entries = std::vector<LogEntry>;
using Items = std::vector<ItemId>;

constexpr platform::ControlId kOkButton{0, 2};

class PrinterListViewTest : public PrinterListViewFixture {
 protected:
  std::string cell(ItemId item, platform::FourCharCode column) {
    return shown(list().cell(item, column).text);
  }
};

// Construction.

TEST_F(PrinterListViewTest, SetsUpTheControlInOrder) {
  view.emplace(window);
  const Lines toolkitCalls{
      "getControlById(PrinterSelectWindow, lPrn.0)",
      "setControlProperty(PrinterSelectWindow/lPrn.0, MjFd, ldPl)",
      "dataBrowserChangeAttributes(PrinterSelectWindow/lPrn.0, 2, 0)",
      "initDataBrowserCallbacks()",
      "setDataBrowserCallbacks(PrinterSelectWindow/lPrn.0, itemData itemCompare itemNotification)",
      "setDataBrowserSortProperty(PrinterSelectWindow/lPrn.0, lcNm)",
  };
  EXPECT_EQ(doubles.takeToolkitCalls(), toolkitCalls);
  const std::string target = " on control " + std::to_string(static_cast<std::uint64_t>(control));
  EXPECT_EQ(doubles.events.takeCalls(),
            (Lines{"install cntl 154" + target, "install cntl 1001" + target}));
  EXPECT_EQ(takeEntries(), Entries{});
}

struct FailingStep {
  std::string call;
  int successes;
  std::string message;
};

TEST_F(PrinterListViewTest, FailingToolkitStepIsNamed) {
  const FailingStep steps[] = {
      {"getControlById", 0, "Failed to get list control."},
      {"setControlProperty", 0, "SetControlProperty"},
      {"dataBrowserChangeAttributes", 0, "DataBrowserChangeAttributes"},
      {"initDataBrowserCallbacks", 0, "InitDataBrowserCallbacks"},
      {"setDataBrowserCallbacks", 0, "SetDataBrowserCallbacks"},
      {"setDataBrowserSortProperty", 0, "SetDataBrowserSortProperty"},
  };
  for (const FailingStep& step : steps) {
    doubles.toolkit.script().answerNext(step.call, -50);
    try {
      const PrinterListView failing(window);
      FAIL() << step.call;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(), step.message + " <status=-50 => paramErr; desc: bad parameter>");
    }
  }
}

TEST_F(PrinterListViewTest, FailingHandlerInstallationIsNamed) {
  const std::string messages[] = {"InstallEventHandler (resize)", "InstallEventHandler (dispose)"};
  for (int successes = 0; successes < 2; ++successes) {
    doubles.events.fail(FakeEvents::Operation::InstallHandler, -50, successes);
    try {
      const PrinterListView failing(window);
      FAIL() << successes;
    } catch (const std::runtime_error& error) {
      EXPECT_EQ(error.what(),
                messages[successes] + " <status=-50 => paramErr; desc: bad parameter>");
    }
  }
}

TEST_F(PrinterListViewTest, FailedConstructionLeavesNothingOnTheControl) {
  doubles.toolkit.script().answerNext("setDataBrowserSortProperty", -50);
  EXPECT_THROW(PrinterListView{window}, std::runtime_error);
  EXPECT_EQ(doubles.events.installedHandlers(), 0u);
  EXPECT_EQ(list().callbacks.itemData, nullptr);
  EXPECT_EQ(list().callbacks.itemCompare, nullptr);
  EXPECT_EQ(list().callbacks.itemNotification, nullptr);
  EXPECT_TRUE(list().cell(1, "lcNm"_4cc).text.isNull());
}

TEST_F(PrinterListViewTest, DestroyedViewLeavesTheControlWithoutHandlersAndCallbacks) {
  makeView();
  add("A");
  view.reset();
  EXPECT_EQ(doubles.events.installedHandlers(), 0u);
  EXPECT_EQ(list().callbacks.itemData, nullptr);
  doubles.screen().removeWindow(window);
}

// Rows.

TEST_F(PrinterListViewTest, AddedPrintersAreLoggedAndGetTheNextId) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter());
  view->addUsbPrinter(device);
  add("Front desk", ipv4Record());
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"addDataBrowserItem(PrinterSelectWindow/lPrn.0, 1)",
                   "addDataBrowserItem(PrinterSelectWindow/lPrn.0, 2)"}));
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "Adding printer with ID=1"}, {5, "Adding printer with ID=2"}}));
}

TEST_F(PrinterListViewTest, IdsAreWrittenInDecimalWhateverTheLogWasSetTo) {
  makeView();
  for (int i = 0; i < 9; ++i) add("A");
  takeEntries();
  Log<5>() << std::hex;
  add("B");
  Log<5>() << std::hex;
  NamedService service("B");
  view->removeBonjourPrinter(&service);
  Log<5>() << std::dec;
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "Adding printer with ID=10"}, {5, "Removing printer with ID=10"}}));
}

TEST_F(PrinterListViewTest, RowThatTheControlRefusesStaysInTheModel) {
  makeView();
  doubles.toolkit.script().answerNext("addDataBrowserItem", -50);
  add("A");
  EXPECT_EQ(list().rows(), Items{});
  add("B");
  EXPECT_EQ(list().rows(), Items{2});
}

TEST_F(PrinterListViewTest, RemovedUsbPrinterLeavesTheControl) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter());
  add("A");
  view->addUsbPrinter(device);
  takeEntries();
  doubles.takeToolkitCalls();

  view->removeUsbPrinter(device);
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"removeDataBrowserItem(PrinterSelectWindow/lPrn.0, 2)"}));
  EXPECT_EQ(takeEntries(), (Entries{{5, "Removing printer with ID=2"}}));
  EXPECT_EQ(list().rows(), Items{1});
}

TEST_F(PrinterListViewTest, RemovedNetworkPrinterLeavesTheControl) {
  makeView();
  add("A");
  add("B");
  takeEntries();
  NamedService service("A");
  view->removeBonjourPrinter(&service);
  EXPECT_EQ(takeEntries(), (Entries{{5, "Removing printer with ID=1"}}));
  EXPECT_EQ(list().rows(), Items{2});
}

TEST_F(PrinterListViewTest, UnknownUsbPrinterIsLogged) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter());
  view->removeUsbPrinter(device);
  EXPECT_EQ(takeEntries(), (Entries{{3,
                                     "Failed to remove USB printer from list. Cannot find the "
                                     "matching printer in the list."}}));
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(PrinterListViewTest, UnknownServiceIsIgnored) {
  makeView();
  NamedService service("A");
  view->removeBonjourPrinter(&service);
  EXPECT_EQ(takeEntries(), Entries{});
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

TEST_F(PrinterListViewTest, PrinterIsRemovedOnce) {
  makeView();
  QuillUsbDevice device = plugIn(fakePrinter());
  view->addUsbPrinter(device);
  view->removeUsbPrinter(device);
  takeEntries();
  view->removeUsbPrinter(device);
  EXPECT_EQ(takeEntries().size(), 1u);
  EXPECT_EQ(list().rows(), Items{});
}

TEST_F(PrinterListViewTest, IdsAreNeverUsedAgain) {
  makeView();
  NamedService service("A");
  add("A");
  add("B");
  view->removeBonjourPrinter(&service);
  add("A");
  EXPECT_EQ(list().rows(), (Items{3, 2}));
  EXPECT_EQ(cell(3, "lcNm"_4cc), "A");
  EXPECT_EQ(cell(2, "lcNm"_4cc), "B");
}

TEST_F(PrinterListViewTest, RowLeadsToItsPrinter) {
  makeView();
  add("A");
  add("B");
  NamedService service("B");
  view->removeBonjourPrinter(&service);
  EXPECT_EQ(shown(view->printer(1).getName()), "A");
  EXPECT_EQ(shown(view->printer(2).getName()), "B");
  EXPECT_THROW(view->printer(0), std::out_of_range);
  EXPECT_THROW(view->printer(3), std::out_of_range);
}

// Selection.

TEST_F(PrinterListViewTest, SelectedPrinterIsTheRecordOfItsRow) {
  makeView();
  add("A");
  add("B");
  doubles.screen().select(kMainWindow, kListId, 2);
  EXPECT_EQ(view->getListSelection(), 2u);
  EXPECT_EQ(shown(view->getSelected()->getName()), "B");
}

TEST_F(PrinterListViewTest, NoSelectionThrows) {
  makeView();
  add("A");
  EXPECT_EQ(view->getListSelection(), 0u);
  try {
    view->getSelected();
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "Invalid list selection");
  }
}

TEST_F(PrinterListViewTest, SelectionOfAnUnknownRowThrows) {
  makeView();
  list().add(7);
  doubles.screen().select(kMainWindow, kListId, 7);
  try {
    view->getSelected();
    FAIL();
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "Invalid index into list");
  }
}

TEST_F(PrinterListViewTest, AnchorThatCannotBeReadCountsAsNoSelection) {
  makeView();
  add("A");
  doubles.screen().select(kMainWindow, kListId, 1);
  doubles.toolkit.script().answerNext("getSelectionAnchor", -50);
  EXPECT_EQ(view->getListSelection(), 0u);
}

TEST_F(PrinterListViewTest, SelectionEnablesTheOkButton) {
  makeView();
  add("A");
  takeEntries();
  doubles.takeToolkitCalls();

  doubles.screen().select(kMainWindow, kListId, 1);
  EXPECT_EQ(
      doubles.takeToolkitCalls(),
      (Lines{"getSelectionAnchor(PrinterSelectWindow/lPrn.0)",
             "controlOwner(PrinterSelectWindow/lPrn.0)", "getControlById(PrinterSelectWindow, 0.2)",
             "setControlEnabled(PrinterSelectWindow/0.2, enabled)"}));
  EXPECT_TRUE(doubles.screen().isEnabled(kMainWindow, kOkButton));

  doubles.screen().select(kMainWindow, kListId, 0);
  EXPECT_FALSE(doubles.screen().isEnabled(kMainWindow, kOkButton));
  EXPECT_EQ(takeEntries(), (Entries{{5, "List selection changed: status=0 first=1 last=1"},
                                    {5, "List selection changed: status=0 first=0 last=0"}}));
}

TEST_F(PrinterListViewTest, RemovalOfTheSelectedRowDisablesTheOkButton) {
  makeView();
  add("A");
  doubles.screen().select(kMainWindow, kListId, 1);
  NamedService service("A");
  view->removeBonjourPrinter(&service);
  EXPECT_FALSE(doubles.screen().isEnabled(kMainWindow, kOkButton));
}

TEST_F(PrinterListViewTest, FailedAnchorIsLoggedAndDisablesTheOkButton) {
  makeView();
  add("A");
  doubles.screen().select(kMainWindow, kListId, 1);
  takeEntries();
  doubles.toolkit.script().answerNext("getSelectionAnchor", -50);
  Log<5>() << std::hex;
  list().callbacks.itemNotification(control, 1, 14);
  EXPECT_EQ(takeEntries(), (Entries{{5, "List selection changed: status=-50 first=0 last=0"}}));
  EXPECT_FALSE(doubles.screen().isEnabled(kMainWindow, kOkButton));
}

TEST_F(PrinterListViewTest, MissingOkButtonIsLogged) {
  makeView();
  add("A");
  takeEntries();
  doubles.toolkit.script().answerNext("getControlById", -50);
  doubles.screen().select(kMainWindow, kListId, 1);
  EXPECT_EQ(takeEntries(),
            (Entries{{5, "List selection changed: status=0 first=1 last=1"},
                     {3, "Can't find OK button. <status=-50 => paramErr; desc: bad parameter>"}}));
  EXPECT_FALSE(doubles.screen().isEnabled(kMainWindow, kOkButton));
}

TEST_F(PrinterListViewTest, OtherNotificationsDoNothing) {
  makeView();
  add("A");
  takeEntries();
  doubles.takeToolkitCalls();
  for (const std::uint32_t message : {0u, 1u, 13u, 15u, 0xFFFFFFFFu}) {
    list().callbacks.itemNotification(control, 1, message);
  }
  EXPECT_EQ(takeEntries(), Entries{});
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{});
}

}  // namespace
