#include "NibWrapper.h"
#include "UiFixture.h"
#include "WindowWrapper.h"

namespace {

class WrappersTest : public UiFixture {};

TEST_F(WrappersTest, NibIsOpenForAsLongAsItsWrapperLives) {
  {
    const NibWrapper nib;
    EXPECT_NE(nib.get(), platform::NibRef::None);
    EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"createNibReference(main)"});
  }
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"disposeNibReference(main)"});
}

TEST_F(WrappersTest, NibThatCannotBeOpenedThrows) {
  script().answerNext("createNibReference", -50);
  expectRuntimeError(withStatus("Failed to create NIB reference."), [] { const NibWrapper nib; });
  EXPECT_EQ(doubles.takeToolkitCalls(), Lines{"createNibReference(main)"});
}

TEST_F(WrappersTest, NullNibThrows) {
  script().answerNext("createNibReference", platform::noErr);
  expectRuntimeError("NIB reference is null.", [] { const NibWrapper nib; });
}

TEST_F(WrappersTest, WindowIsHiddenAndDisposedOfWithItsWrapper) {
  NibWrapper nib;
  {
    const WindowWrapper window(text("PrinterSelectWindow"), nib);
    EXPECT_EQ(window.get(), screen().window("PrinterSelectWindow"));
    EXPECT_FALSE(screen().isVisible("PrinterSelectWindow"));
  }
  EXPECT_EQ(doubles.takeToolkitCalls(),
            (Lines{"createNibReference(main)", "createWindowFromNib(main, PrinterSelectWindow)",
                   "disposeWindow(PrinterSelectWindow)"}));
  EXPECT_FALSE(screen().exists("PrinterSelectWindow"));
}

TEST_F(WrappersTest, WindowThatCannotBeCreatedThrows) {
  NibWrapper nib;
  script().answerNext("createWindowFromNib", -50);
  expectRuntimeError(withStatus("Failed to create window from NIB."),
                     [&] { const WindowWrapper window(text("PrinterSelectWindow"), nib); });
}

TEST_F(WrappersTest, NullWindowThrows) {
  NibWrapper nib;
  script().answerNext("createWindowFromNib", platform::noErr);
  expectRuntimeError("Window reference is null.",
                     [&] { const WindowWrapper window(text("PrinterSelectWindow"), nib); });
}

TEST_F(WrappersTest, WindowThatIsGoneAlreadyIsHarmless) {
  NibWrapper nib;
  {
    const WindowWrapper window(text("PrinterSelectWindow"), nib);
    doubles.toolkit.disposeWindow(window.get());
  }
  EXPECT_EQ(doubles.takeToolkitCalls().back(), "disposeWindow(gone)");
}

}  // namespace
