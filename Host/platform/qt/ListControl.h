// The list control of an interface file (a QTreeView there). Its columns stand in the file as
// dynamic properties: "columns" names their codes ("lcNm lcTy lcId"); "<code>Title" and
// "<code>Ems" give each one's title and its width in ems of the font. While there is no row,
// "placeholderText" is shown, and after ten seconds "advice", with "adviceWithoutDaemon" below it
// where the host has no daemon that finds printers. "rowPicture" names the picture of a printer.
// Owned by its window.
#pragma once

#include <QIcon>
#include <QItemSelectionModel>
#include <QTimer>
#include <QTreeView>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/Toolkit.h"
#include "platform/qt/EmptyState.h"
#include "platform/qt/ListModel.h"

namespace platform {

class ListControl : public QTreeView {
 public:
  explicit ListControl(QWidget* parent);
  ~ListControl() override;

  // Reads the columns, once the file's properties are set.
  void setUpColumns();

  // Nothing is called before. `resized` gets the bounds before and after.
  struct Observer {
    std::function<void()> selectionChanged;
    std::function<void(const QRect& before, const QRect& after)> resized;
    std::function<void()> rowActivated;
  };
  void observe(Observer observer);

  // There is one, or it is not known yet, until this is called.
  void noteDaemon(bool isMissing);

  // Ends all calls out of the control.
  void disconnectProgram();

  ListModel& items() { return mModel; }
  ItemId selectedItem() const;
  bool removeItem(ItemId item);

  // Of the selected row: its text in that column, and its place on the screen as far as it shows.
  // Empty when there is none.
  QString selectedText(FourCharCode property) const;
  QRect selectedPlace() const;

  void scrollToSelected(ScrollHint hint);

  // Widths as the program knows them, modulo 65536. The upper half of that range is what a width
  // below zero wraps to: the column is then shown at its smallest.
  std::uint16_t columnWidthOf(int column) const;
  void setColumnWidthOf(int column, std::uint16_t width);

  // Gives each column the width that the file asks for, or its share where there is less room, but
  // that of its title at least, and the first what is left. The vertical scroll bar's place stays
  // free for it. For a window that has its size but is not shown yet.
  void fitColumns();

  // What each row begins with, and what stands in an empty list.
  void setPicture(const QIcon& picture);

  QSize sizeHint() const override;

 protected:
  void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
  void rowsInserted(const QModelIndex& parent, int start, int end) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;
  bool viewportEvent(QEvent* event) override;

 private:
  // A selection that nothing changes while the control is disabled: assistive technology reaches
  // the selection of a disabled list.
  class Selection : public QItemSelectionModel {
   public:
    Selection(QAbstractItemModel* model, QTreeView& view);
    void select(const QItemSelection& selection, SelectionFlags command) override;
    void select(const QModelIndex& index, SelectionFlags command) override;
    using QItemSelectionModel::select;
    void forget();

   private:
    QTreeView& mView;
    bool mForgetting = false;
  };

  void noteSelection();
  bool selectsCurrentRow(int key);
  int widthInEms(int column) const;
  int wantedWidth() const;
  void noteUserWidth(int column, int width);
  void waitForRows();
  void advise();
  void describePlaceholder();
  QString placeholder() const;
  EmptyState emptyState() const;

  QIcon mPicture;
  ListModel mModel;
  Selection mSelection;
  Observer mObserver;
  ItemId mKnownSelection = 0;
  bool mWasPressedOnARow = false;
  std::vector<std::uint16_t> mWidths;
  QRect mBounds;
  QTimer mAdviceTimer{this};  // while there is no row and no advice
  bool mAdvises = false;
  bool mDaemonIsMissing = false;
};

}  // namespace platform
