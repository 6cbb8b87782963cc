// A toolkit without a screen of its own. It keeps every call in words, answers with the statuses
// that a test puts in its script, and shows on its FakeScreen what the calls lead to.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "CallScript.h"
#include "FakeNib.h"
#include "FakeScreen.h"
#include "platform/Toolkit.h"

class FakeToolkit : public platform::Toolkit {
 public:
  // Knows the product's interface file.
  explicit FakeToolkit(FakeScreen::EventSender sender);

  // Takes the place of a nib of the same name.
  void defineNib(const FakeNib& nib);

  // Calls are written as "showSheetWindow(ProgressSheet, PrinterSelectWindow)", a control as
  // ProgressSheet/tPNm.0, null as "none", and what is there no more as "gone".
  CallScript& script() { return mScript; }

  FakeScreen& screen() { return mScreen; }

  platform::OSStatus createNibReference(const platform::Text& name, platform::NibRef& nib) override;
  void disposeNibReference(platform::NibRef nib) override;
  platform::OSStatus setMenuBarFromNib(platform::NibRef nib, const platform::Text& name) override;
  platform::OSStatus createWindowFromNib(platform::NibRef nib, const platform::Text& name,
                                         platform::WindowRef& window) override;
  void disposeWindow(platform::WindowRef window) override;
  void showWindow(platform::WindowRef window) override;
  platform::OSStatus showSheetWindow(platform::WindowRef sheet,
                                     platform::WindowRef parent) override;
  platform::OSStatus hideSheetWindow(platform::WindowRef sheet) override;
  platform::OSStatus getControlById(platform::WindowRef window, platform::ControlId id,
                                    platform::ControlRef& control) override;
  platform::WindowRef controlOwner(platform::ControlRef control) override;
  platform::OSStatus setControlText(platform::ControlRef control,
                                    const platform::Text& text) override;
  platform::OSStatus setControlEnabled(platform::ControlRef control, bool enabled) override;
  platform::OSStatus setControlProperty(platform::ControlRef control,
                                        platform::FourCharCode creator, platform::FourCharCode tag,
                                        void* value) override;
  platform::OSStatus getControlProperty(platform::ControlRef control,
                                        platform::FourCharCode creator, platform::FourCharCode tag,
                                        void*& value) override;
  platform::OSStatus dataBrowserChangeAttributes(platform::ControlRef control, std::uint32_t set,
                                                 std::uint32_t clear) override;
  platform::OSStatus initDataBrowserCallbacks(platform::DataBrowserCallbacks& callbacks) override;
  platform::OSStatus setDataBrowserCallbacks(
      platform::ControlRef control, const platform::DataBrowserCallbacks& callbacks) override;
  platform::OSStatus setDataBrowserSortProperty(platform::ControlRef control,
                                                platform::FourCharCode property) override;
  platform::OSStatus addDataBrowserItem(platform::ControlRef control,
                                        platform::ItemId item) override;
  platform::OSStatus removeDataBrowserItem(platform::ControlRef control,
                                           platform::ItemId item) override;
  platform::OSStatus getSelectionAnchor(platform::ControlRef control, platform::ItemId& first,
                                        platform::ItemId& last) const override;
  platform::OSStatus getNamedColumnWidth(platform::ControlRef control,
                                         platform::FourCharCode property,
                                         std::uint16_t& width) override;
  platform::OSStatus setNamedColumnWidth(platform::ControlRef control,
                                         platform::FourCharCode property,
                                         std::uint16_t width) override;

 private:
  // Records the call; acts unless the script answers, or there is no such control, or no such list.
  template <typename Act>
  platform::OSStatus onControl(const char* call, platform::ControlRef control,
                               std::vector<std::string> arguments, Act act);
  template <typename Act>
  platform::OSStatus onList(const char* call, platform::ControlRef control,
                            std::vector<std::string> arguments, Act act);

  std::string label(platform::NibRef nib) const;
  std::string label(platform::WindowRef window) const;
  std::string label(platform::ControlRef control) const;

  mutable CallScript mScript;
  mutable FakeScreen mScreen;
  std::map<std::string, FakeNib> mKnownNibs;
  std::uint64_t mLastNib = 0;
  std::map<platform::NibRef, FakeNib> mNibs;
};
