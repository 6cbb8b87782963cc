#include "FakeListControl.h"

#include <algorithm>

using platform::ItemId;

namespace {

class CellText : public platform::ItemData {
 public:
  explicit CellText(FakeListControl::Cell& cell) : mCell(cell) {}

  platform::OSStatus setText(const platform::Text& text) override {
    mCell.given = true;
    mCell.text = text;
    return platform::noErr;
  }

 private:
  FakeListControl::Cell& mCell;
};

}  // namespace

bool FakeListControl::contains(ItemId item) const {
  return std::ranges::find(mItems, item) != mItems.end();
}

void FakeListControl::add(ItemId item) { mItems.push_back(item); }

void FakeListControl::remove(ItemId item) {
  std::erase(mItems, item);
  if (mSelected == item) select(0);
}

void FakeListControl::select(ItemId item) {
  if (mSelected == item) return;
  mSelected = item;
  if (callbacks.itemNotification == nullptr) return;
  callbacks.itemNotification(mSelf, item, platform::kDataBrowserSelectionSetChanged);
}

std::vector<ItemId> FakeListControl::rows() const {
  std::vector<ItemId> sorted;
  for (const ItemId item : mItems) {
    const auto place = std::ranges::find_if(sorted, [&](ItemId row) {
      return callbacks.itemCompare != nullptr &&
             callbacks.itemCompare(mSelf, item, row, sortProperty);
    });
    sorted.insert(place, item);
  }
  return sorted;
}

FakeListControl::Cell FakeListControl::cell(ItemId item, platform::FourCharCode column) const {
  Cell cell;
  CellText data(cell);
  if (callbacks.itemData != nullptr) {
    cell.status = callbacks.itemData(mSelf, item, column, data, false);
  }
  return cell;
}
