// The rows of a list control. It knows item IDs only: texts and order come from the control's
// callbacks each time. Rows are kept sorted; rows without a text in the sort column come last.
// Owned by its ListControl.
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <vector>

#include "platform/Toolkit.h"

namespace platform {

class ListModel : public QAbstractTableModel {
 public:
  struct Column {
    FourCharCode property;
    QString title;
  };

  using QAbstractTableModel::QAbstractTableModel;

  void setColumns(std::vector<Column> columns);

  // Stands before each row's first text.
  void setPicture(const QIcon& picture);

  // `control` is what the callbacks get. The rows are sorted and shown anew.
  void setCallbacks(ControlRef control, const DataBrowserCallbacks& callbacks);
  const DataBrowserCallbacks& callbacks() const { return mCallbacks; }
  ControlRef control() const { return mControl; }

  // False when the item is 0 or there already; when it is not there.
  bool add(ItemId item);
  bool remove(ItemId item);

  ItemId itemAt(int row) const;
  int rowOf(ItemId item) const;               // -1 when there is none
  int columnOf(FourCharCode property) const;  // -1 when there is none
  FourCharCode propertyAt(int column) const;  // 0 when there is none

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  Text textOf(ItemId item, FourCharCode property) const;
  bool isBefore(ItemId a, ItemId b) const;
  std::size_t placeFor(ItemId item, const std::vector<ItemId>& sorted) const;
  void sortAnew();

  std::vector<Column> mColumns;
  QIcon mPicture;
  std::vector<ItemId> mItems;
  ControlRef mControl = ControlRef::None;
  DataBrowserCallbacks mCallbacks;
  FourCharCode mSortProperty = 0;
  Qt::SortOrder mSortOrder = Qt::AscendingOrder;
};

}  // namespace platform
