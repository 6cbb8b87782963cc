#include "platform/qt/ListModel.h"

#include <algorithm>
#include <utility>

#include "platform/qt/QtText.h"

namespace platform {
namespace {

class CellText final : public ItemData {
 public:
  OSStatus setText(const Text& text) override {
    mText = text;
    return noErr;
  }

  Text text() const { return mText; }

 private:
  Text mText;
};

}  // namespace

void ListModel::setColumns(std::vector<Column> columns) {
  beginResetModel();
  mColumns = std::move(columns);
  endResetModel();
}

void ListModel::setPicture(const QIcon& picture) {
  beginResetModel();
  mPicture = picture;
  endResetModel();
}

void ListModel::setCallbacks(ControlRef control, const DataBrowserCallbacks& callbacks) {
  mControl = control;
  mCallbacks = callbacks;
  sortAnew();
}

bool ListModel::add(ItemId item) {
  if (item == 0 || rowOf(item) >= 0) return false;
  const std::size_t place = placeFor(item, mItems);
  beginInsertRows({}, static_cast<int>(place), static_cast<int>(place));
  mItems.insert(mItems.begin() + static_cast<std::ptrdiff_t>(place), item);
  endInsertRows();
  return true;
}

bool ListModel::remove(ItemId item) {
  const int row = rowOf(item);
  if (row < 0) return false;
  beginRemoveRows({}, row, row);
  mItems.erase(mItems.begin() + row);
  endRemoveRows();
  return true;
}

ItemId ListModel::itemAt(int row) const {
  return row < 0 || row >= rowCount() ? 0 : mItems[static_cast<std::size_t>(row)];
}

int ListModel::rowOf(ItemId item) const {
  const auto found = std::ranges::find(mItems, item);
  return found == mItems.end() ? -1 : static_cast<int>(found - mItems.begin());
}

int ListModel::columnOf(FourCharCode property) const {
  const auto found = std::ranges::find(mColumns, property, &Column::property);
  return found == mColumns.end() ? -1 : static_cast<int>(found - mColumns.begin());
}

FourCharCode ListModel::propertyAt(int column) const {
  return column < 0 || column >= columnCount()
             ? 0
             : mColumns[static_cast<std::size_t>(column)].property;
}

int ListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mItems.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(mColumns.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  const FourCharCode property = propertyAt(index.column());
  const ItemId item = itemAt(index.row());
  if (property == 0 || item == 0) return {};
  if (role == Qt::DecorationRole && index.column() == 0 && !mPicture.isNull()) return mPicture;
  if (role != Qt::DisplayRole) return {};
  return legible(toQString(textOf(item, property)));
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || propertyAt(section) == 0) return {};
  if (role == Qt::DisplayRole) return mColumns[static_cast<std::size_t>(section)].title;
  if (role == Qt::TextAlignmentRole)
    return QVariant::fromValue(Qt::AlignLeading | Qt::AlignVCenter);
  return {};
}

void ListModel::sort(int column, Qt::SortOrder order) {
  mSortProperty = propertyAt(column);
  mSortOrder = order;
  sortAnew();
}

Text ListModel::textOf(ItemId item, FourCharCode property) const {
  CellText cell;
  if (mCallbacks.itemData == nullptr) return {};
  const OSStatus status = mCallbacks.itemData(mControl, item, property, cell, false);
  return status == noErr ? cell.text() : Text();
}

bool ListModel::isBefore(ItemId a, ItemId b) const {
  if (mSortProperty == 0 || mCallbacks.itemCompare == nullptr) return false;
  const bool aHasText = !textOf(a, mSortProperty).isNull();
  const bool bHasText = !textOf(b, mSortProperty).isNull();
  if (aHasText != bHasText) return aHasText;
  return mSortOrder == Qt::AscendingOrder ? mCallbacks.itemCompare(mControl, a, b, mSortProperty)
                                          : mCallbacks.itemCompare(mControl, b, a, mSortProperty);
}

// The place after all that do not come after the item. A binary search of our own, because the
// callback need not be a consistent order (a printer without an address comes before none), which
// the algorithms of the standard library require.
std::size_t ListModel::placeFor(ItemId item, const std::vector<ItemId>& sorted) const {
  std::size_t low = 0;
  std::size_t high = sorted.size();
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (isBefore(item, sorted[middle])) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

// Views keep their selection by item, not by row.
void ListModel::sortAnew() {
  emit layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const std::vector<ItemId> before = std::exchange(mItems, {});
  for (const ItemId item : before) {
    mItems.insert(mItems.begin() + static_cast<std::ptrdiff_t>(placeFor(item, mItems)), item);
  }
  for (const QModelIndex& old : persistentIndexList()) {
    const ItemId item = before[static_cast<std::size_t>(old.row())];
    changePersistentIndex(old, index(rowOf(item), old.column()));
  }
  emit layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

}  // namespace platform
