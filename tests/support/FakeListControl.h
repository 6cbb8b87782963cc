// The list control of the toolkit double: rows, their order, the selection and the columns, all
// through the callbacks that the product installs.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "platform/Toolkit.h"

class FakeListControl {
 public:
  struct Cell {
    platform::OSStatus status = 0;  // the callback's answer
    bool given = false;             // whether it gave a text
    platform::Text text;
  };

  explicit FakeListControl(platform::ControlRef self) : mSelf(self) {}

  bool contains(platform::ItemId item) const;
  void add(platform::ItemId item);
  void remove(platform::ItemId item);  // a selected row is deselected
  void select(platform::ItemId item);  // 0 for none; tells of a change
  platform::ItemId selected() const { return mSelected; }

  // In sorted order; rows of which neither sorts before the other stay in the order of addition.
  std::vector<platform::ItemId> rows() const;
  Cell cell(platform::ItemId item, platform::FourCharCode column) const;

  platform::DataBrowserCallbacks callbacks;
  platform::FourCharCode sortProperty = 0;
  std::uint32_t attributes = 0;
  std::map<platform::FourCharCode, std::uint16_t> columns;  // with their widths

 private:
  platform::ControlRef mSelf;
  std::vector<platform::ItemId> mItems;
  platform::ItemId mSelected = 0;
};
