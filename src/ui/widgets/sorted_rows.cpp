#include "ui/widgets/sorted_rows.hpp"

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

namespace lotmere::ui {
namespace {

// The value of a field; nothing where it is a text.
std::optional<double> numberIn(const QVariant& field) {
  constexpr double least = -std::numeric_limits<double>::infinity();
  if (!field.isValid()) return least;
  if (field.metaType().id() != QMetaType::QString) return field.toDouble();
  const QString text = field.toString();
  if (text.isEmpty()) return least;
  bool is_number = false;
  const double number = text.toDouble(&is_number);
  return is_number ? std::optional(number) : std::nullopt;
}

// Nothing where a field of the column is a text.
std::optional<std::vector<double>> numbersOf(const QAbstractItemModel& rows, int column) {
  std::vector<double> numbers(rows.rowCount());
  for (std::size_t row = 0; row < numbers.size(); ++row) {
    const auto number = numberIn(rows.index(static_cast<int>(row), column).data());
    if (!number) return std::nullopt;
    numbers[row] = *number;
  }
  return numbers;
}

std::vector<QString> textsOf(const QAbstractItemModel& rows, int column) {
  std::vector<QString> texts(rows.rowCount());
  for (std::size_t row = 0; row < texts.size(); ++row)
    texts[row] = rows.index(static_cast<int>(row), column).data().toString();
  return texts;
}

template <class Key>
void sortBy(const std::vector<Key>& keys, Qt::SortOrder direction, std::vector<int>& rows) {
  if (direction == Qt::AscendingOrder)
    std::ranges::stable_sort(rows, [&](int one, int other) { return keys[one] < keys[other]; });
  else
    std::ranges::stable_sort(rows, [&](int one, int other) { return keys[other] < keys[one]; });
}

}  // namespace

SortedRows::SortedRows(QAbstractItemModel& stored, QObject* parent)
    : QAbstractTableModel(parent), stored_(&stored) {
  connect(&stored, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beginResetModel(); });
  connect(&stored, &QAbstractItemModel::modelReset, this, [this] {
    arrange();
    endResetModel();
  });
  connect(&stored, &QAbstractItemModel::dataChanged, this, &SortedRows::passChange);
  // The page goes, and its views are about to follow: nothing is to be worked out for them any more.
  connect(&stored, &QObject::destroyed, this, [this] { stored_ = nullptr; });
}

void SortedRows::arrange() {
  stored_rows_.clear();
  shown_rows_.clear();
  if (!isSorted()) return;
  stored_rows_.resize(stored_->rowCount());
  std::iota(stored_rows_.begin(), stored_rows_.end(), 0);
  if (const auto numbers = numbersOf(*stored_, column_))
    sortBy(*numbers, direction_, stored_rows_);
  else
    sortBy(textsOf(*stored_, column_), direction_, stored_rows_);
  shown_rows_.resize(stored_rows_.size());
  for (std::size_t row = 0; row < stored_rows_.size(); ++row)
    shown_rows_[stored_rows_[row]] = static_cast<int>(row);
}

void SortedRows::sort(int column, Qt::SortOrder direction) {
  if (column == column_ && (column < 0 || direction == direction_)) return;
  Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
  const QModelIndexList before = persistentIndexList();
  std::vector<int> rows;
  rows.reserve(before.size());
  for (const QModelIndex& index : before) rows.push_back(storedRow(index.row()));
  column_ = column;
  direction_ = direction;
  arrange();
  QModelIndexList after;
  after.reserve(before.size());
  for (qsizetype i = 0; i < before.size(); ++i) after.append(index(shownRow(rows[i]), before[i].column()));
  changePersistentIndexList(before, after);
  Q_EMIT layoutChanged({}, VerticalSortHint);
}

// The rows that changed may stand anywhere now.
void SortedRows::passChange(const QModelIndex& first, const QModelIndex& last, const QList<int>& roles) {
  const int top = isSorted() ? 0 : first.row();
  const int bottom = isSorted() ? rowCount() - 1 : last.row();
  Q_EMIT dataChanged(index(top, first.column()), index(bottom, last.column()), roles);
}

int SortedRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() || stored_ == nullptr ? 0 : stored_->rowCount();
}

int SortedRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() || stored_ == nullptr ? 0 : stored_->columnCount();
}

QVariant SortedRows::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || stored_ == nullptr) return {};
  return stored_->data(stored_->index(storedRow(index.row()), index.column()), role);
}

QVariant SortedRows::headerData(int section, Qt::Orientation orientation, int role) const {
  return stored_ == nullptr ? QVariant() : stored_->headerData(section, orientation, role);
}

}  // namespace lotmere::ui
