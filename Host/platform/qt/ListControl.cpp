#include "platform/qt/ListControl.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/qt/Em.h"
#include "platform/qt/QtText.h"

namespace platform {
namespace {

constexpr int kVisibleRows = 8;
constexpr int kRowPicture = 24;
constexpr int kSmallestColumnEms = 2;
constexpr std::chrono::seconds kPatience{10};

int comfortableHeight(const QFontMetrics& font) {
  return std::max(font.height() * 3 / 2, kRowPicture + font.height() / 3);
}

// Rows that are easy to read and to hit.
class Rows final : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize needed = QStyledItemDelegate::sizeHint(option, index);
    return {needed.width(), std::max(needed.height(), comfortableHeight(option.fontMetrics))};
  }
};

// Knows the widths that a user gives its columns from those that Qt works out.
class Header final : public QHeaderView {
 public:
  explicit Header(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {}

  bool isInHand() const { return mInHand; }

 protected:
  void mouseMoveEvent(QMouseEvent* event) override {
    const QScopedValueRollback inHand(mInHand, true);
    QHeaderView::mouseMoveEvent(event);
  }

  // Fits a column to its contents.
  void mouseDoubleClickEvent(QMouseEvent* event) override {
    const QScopedValueRollback inHand(mInHand, true);
    QHeaderView::mouseDoubleClickEvent(event);
  }

 private:
  bool mInHand = false;
};

std::uint16_t wrapped(int width) { return static_cast<std::uint16_t>(width); }

}  // namespace

ListControl::Selection::Selection(QAbstractItemModel* model, QTreeView& view)
    : QItemSelectionModel(model, &view), mView(view) {}

void ListControl::Selection::select(const QItemSelection& selection, SelectionFlags command) {
  if (mView.isEnabled() || mForgetting) QItemSelectionModel::select(selection, command);
}

void ListControl::Selection::select(const QModelIndex& index, SelectionFlags command) {
  if (mView.isEnabled() || mForgetting) QItemSelectionModel::select(index, command);
}

void ListControl::Selection::forget() {
  mForgetting = true;
  clear();
  mForgetting = false;
}

ListControl::ListControl(QWidget* parent) : QTreeView(parent), mSelection(&mModel, *this) {
  setModel(&mModel);
  setSelectionModel(&mSelection);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setEditTriggers(NoEditTriggers);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setItemDelegate(new Rows(this));
  setIconSize(QSize(kRowPicture, kRowPicture));
  setAllColumnsShowFocus(true);
  auto* const columns = new Header(this);
  setHeader(columns);
  columns->setStretchLastSection(true);
  connect(columns, &QHeaderView::sectionResized, this, [this, columns](int column, int, int width) {
    if (columns->isInHand()) noteUserWidth(column, width);
  });
  connect(&mSelection, &QItemSelectionModel::selectionChanged, this, [this] { noteSelection(); });
  mAdviceTimer.setObjectName(QStringLiteral("adviceTimer"));
  mAdviceTimer.setSingleShot(true);
  mAdviceTimer.setInterval(kPatience);
  connect(&mAdviceTimer, &QTimer::timeout, this, [this] { advise(); });
}

// The view looks at its model and selection until the end.
ListControl::~ListControl() {
  disconnectProgram();
  setModel(nullptr);
}

void ListControl::setPicture(const QIcon& picture) {
  mPicture = picture;
  mModel.setPicture(picture);
}

void ListControl::setUpColumns() {
  std::vector<ListModel::Column> columns;
  const QStringList codes = property("columns").toString().split(u' ', Qt::SkipEmptyParts);
  for (const QString& code : codes) {
    const QString title = property((code + "Title").toLatin1().constData()).toString();
    columns.push_back({codeFrom(code), title});
  }
  mWidths.assign(columns.size(), 0);
  mModel.setColumns(std::move(columns));

  header()->setMinimumSectionSize(kSmallestColumnEms * emOf(*this));
  describePlaceholder();
  setSortingEnabled(true);
  header()->setSortIndicator(-1, Qt::AscendingOrder);
}

void ListControl::observe(Observer observer) { mObserver = std::move(observer); }

void ListControl::noteDaemon(bool isMissing) {
  mDaemonIsMissing = isMissing;
  describePlaceholder();
}

void ListControl::disconnectProgram() {
  mObserver = {};
  mModel.setCallbacks(ControlRef::None, {});
}

ItemId ListControl::selectedItem() const {
  const QModelIndexList rows = mSelection.selectedRows();
  return rows.isEmpty() ? 0 : mModel.itemAt(rows.first().row());
}

bool ListControl::removeItem(ItemId item) {
  const bool removed = mModel.remove(item);
  if (isVisible()) waitForRows();
  describePlaceholder();
  return removed;
}

QString ListControl::selectedText(FourCharCode property) const {
  const QModelIndex cell = mModel.index(mModel.rowOf(selectedItem()), mModel.columnOf(property));
  return mModel.data(cell, Qt::DisplayRole).toString();
}

QRect ListControl::selectedPlace() const {
  const QModelIndexList rows = mSelection.selectedRows();
  if (rows.isEmpty()) return {};
  QRect place = visualRect(rows.first());
  place.setLeft(0);
  place.setRight(viewport()->width());
  place &= viewport()->rect();
  return {viewport()->mapToGlobal(place.topLeft()), place.size()};
}

void ListControl::scrollToSelected(ScrollHint hint) {
  const QModelIndexList rows = mSelection.selectedRows();
  if (!rows.isEmpty()) scrollTo(rows.first(), hint);
}

std::uint16_t ListControl::columnWidthOf(int column) const {
  return mWidths[static_cast<std::size_t>(column)];
}

void ListControl::setColumnWidthOf(int column, std::uint16_t width) {
  mWidths[static_cast<std::size_t>(column)] = width;
  const bool wrappedBelowZero = width > 0x7FFF;
  header()->resizeSection(
      column, std::max<int>(wrappedBelowZero ? 0 : width, header()->minimumSectionSize()));
}

void ListControl::fitColumns() {
  mBounds = geometry();
  const int room = width() - 2 * frameWidth() - verticalScrollBar()->sizeHint().width();
  const int wanted = wantedWidth();
  if (wanted == 0) return;
  int others = 0;
  for (int column = mModel.columnCount() - 1; column >= 0; --column) {
    const int whole = widthInEms(column) * emOf(*this);
    const int fitting =
        std::max(std::min(whole, whole * room / wanted), header()->sectionSizeHint(column));
    setColumnWidthOf(column, wrapped(column > 0 ? fitting : std::max(0, room - others)));
    others += fitting;
  }
}

int ListControl::wantedWidth() const {
  int ems = 0;
  for (int column = 0; column < mModel.columnCount(); ++column) {
    ems += widthInEms(column);
  }
  return ems * emOf(*this);
}

QSize ListControl::sizeHint() const {
  return {wantedWidth() + 2 * frameWidth(), kVisibleRows * comfortableHeight(fontMetrics()) +
                                                header()->sizeHint().height() + 2 * frameWidth()};
}

// The selection ends with its row. Left to itself the view would select the next row, and the user
// would go on with a printer that he did not choose.
void ListControl::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
  const int selected = mModel.rowOf(selectedItem());
  const int current = currentIndex().row();
  if ((selected >= start && selected <= end) || (current >= start && current <= end)) {
    mSelection.forget();
  }
  QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

void ListControl::rowsInserted(const QModelIndex& parent, int start, int end) {
  QTreeView::rowsInserted(parent, start, end);
  mAdviceTimer.stop();
  mAdvises = false;
  describePlaceholder();
}

void ListControl::showEvent(QShowEvent* event) {
  QTreeView::showEvent(event);
  waitForRows();
}

void ListControl::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  const QRect before = std::exchange(mBounds, geometry());
  if (before.size() != mBounds.size() && mObserver.resized) mObserver.resized(before, mBounds);
}

void ListControl::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (mModel.rowCount() > 0) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::Text));
  emptyState().draw(painter, viewport()->rect());
}

void ListControl::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!isEnter) {
    if (!selectsCurrentRow(event->key())) QTreeView::keyPressEvent(event);
    return;
  }
  // A key that is held down must not go on into the question that it opens.
  if (!event->isAutoRepeat() && selectedItem() != 0 && mObserver.rowActivated) {
    mObserver.rowActivated();
  }
}

// With nothing selected yet, the keys that move the selection begin at the row with the focus
// instead of passing it.
bool ListControl::selectsCurrentRow(int key) {
  const bool begins = key == Qt::Key_Down || key == Qt::Key_Up || key == Qt::Key_Home;
  if (!begins || selectedItem() != 0 || mModel.rowCount() == 0) return false;
  const int row = key == Qt::Key_Home ? 0 : std::max(0, currentIndex().row());
  setCurrentIndex(mModel.index(row, 0));
  mSelection.select(currentIndex(),
                    QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  return true;
}

void ListControl::mousePressEvent(QMouseEvent* event) {
  mWasPressedOnARow = indexAt(event->position().toPoint()).isValid();
  QTreeView::mousePressEvent(event);
}

// A click that slips off its row is for the row all the same. So is a quick one in a window that
// the window manager has to activate first: by then the mouse may be where it goes next.
QItemSelectionModel::SelectionFlags ListControl::selectionCommand(const QModelIndex& index,
                                                                  const QEvent* event) const {
  const bool isLetGo = event != nullptr && event->type() == QEvent::MouseButtonRelease;
  if (isLetGo && mWasPressedOnARow && !index.isValid()) return QItemSelectionModel::NoUpdate;
  return QTreeView::selectionCommand(index, event);
}

void ListControl::mouseDoubleClickEvent(QMouseEvent* event) {
  QTreeView::mouseDoubleClickEvent(event);
  const bool onSelectedRow =
      mModel.itemAt(indexAt(event->position().toPoint()).row()) != 0 && selectedItem() != 0;
  if (event->button() == Qt::LeftButton && onSelectedRow && mObserver.rowActivated) {
    mObserver.rowActivated();
  }
}

// A text that its column, or the list, cuts off is shown whole.
bool ListControl::viewportEvent(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QTreeView::viewportEvent(event);
  const auto* help = static_cast<QHelpEvent*>(event);
  const QModelIndex index = indexAt(help->pos());
  const bool isEmpty = mModel.rowCount() == 0;
  const QString text = isEmpty ? placeholder() : index.data().toString();
  const QRect cell = isEmpty ? viewport()->rect() : visualRect(index);
  const bool cutOff =
      isEmpty ? !emptyState().fits(cell) : sizeHintForIndex(index).width() > cell.width();
  const QString lines = text.toHtmlEscaped().replace(u'\n', QLatin1String("<br>"));
  QToolTip::showText(help->globalPos(), cutOff ? "<qt>" + lines + "</qt>" : QString(), this, cell);
  return true;
}

// Qt also tells of a selection that moves with its row.
void ListControl::noteSelection() {
  const ItemId selected = selectedItem();
  if (std::exchange(mKnownSelection, selected) == selected) return;
  if (mObserver.selectionChanged) mObserver.selectionChanged();
}

int ListControl::widthInEms(int column) const {
  const QString name = charactersOf(mModel.propertyAt(column)) + "Ems";
  return property(name.toLatin1().constData()).toInt();
}

// The last column only takes what is left over.
void ListControl::noteUserWidth(int column, int width) {
  if (column + 1 < mModel.columnCount()) {
    mWidths[static_cast<std::size_t>(column)] = wrapped(width);
  }
}

void ListControl::waitForRows() {
  if (mModel.rowCount() == 0 && !mAdvises && !mAdviceTimer.isActive()) mAdviceTimer.start();
}

void ListControl::advise() {
  mAdvises = true;
  describePlaceholder();
}

void ListControl::describePlaceholder() {
  setAccessibleDescription(mModel.rowCount() == 0 ? placeholder() : QString());
  viewport()->update();
}

QString ListControl::placeholder() const {
  const QString advice = property("advice").toString();
  if (!mAdvises || advice.isEmpty()) return property("placeholderText").toString();
  return mDaemonIsMissing ? advice + u'\n' + property("adviceWithoutDaemon").toString() : advice;
}

EmptyState ListControl::emptyState() const { return {placeholder(), mPicture, font()}; }

}  // namespace platform
