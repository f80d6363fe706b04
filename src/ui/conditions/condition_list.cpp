#include "ui/conditions/condition_list.hpp"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>
#include <algorithm>

#include "panels/pages.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

// The sheet stands above the groups, the summary below them.
int groupCount() { return static_cast<int>(conditionGroups().size()); }
int topRows() { return groupCount() + 2; }
bool isGroup(int top) { return top > 0 && top <= groupCount(); }
const ConditionGroup& groupOf(int top) { return conditionGroups()[static_cast<std::size_t>(top - 1)]; }

constexpr int kLeastWidth = 336;

// The internal id of a row is its group's place among the top rows, that of a top row is 0.
constexpr quintptr kTop = 0;

class OnlyWanted : public QSortFilterProxyModel {
 public:
  using QSortFilterProxyModel::QSortFilterProxyModel;
  void filter(const QString& text, bool only_on) {
    text_ = text;
    only_on_ = only_on;
    invalidateFilter();
  }

 protected:
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (sourceModel()->rowCount(index) > 0) return false;  // a group stands where one of its rows does
    if (!parent.isValid()) return text_.isEmpty() && !only_on_;
    if (only_on_ && !index.data(ConditionListModel::on_role).toBool()) return false;
    return index.data(ConditionListModel::search_role).toString().contains(text_, Qt::CaseInsensitive);
  }

 private:
  QString text_;
  bool only_on_ = false;
};

}  // namespace

ConditionListModel::ConditionListModel(Session& session, ConditionFacts& facts, QObject* parent)
    : QAbstractItemModel(parent), session_(session), facts_(facts) {}

void ConditionListModel::showFunnel(std::vector<FunnelStep> funnel) {
  funnel_ = std::move(funnel);
  refresh();
}

void ConditionListModel::refresh() {
  Q_EMIT dataChanged(index(0, 0), index(topRows() - 1, column_count - 1));
  for (int top = 1; top <= groupCount(); ++top) {
    const QModelIndex group = index(top, 0);
    Q_EMIT dataChanged(index(0, 0, group), index(rowCount(group) - 1, column_count - 1, group));
  }
}

const ConditionRow* ConditionListModel::rowAt(const QModelIndex& index) const {
  if (!index.isValid() || index.internalId() == kTop) return nullptr;
  return &groupOf(static_cast<int>(index.internalId())).rows[static_cast<std::size_t>(index.row())];
}

int ConditionListModel::tabAt(const QModelIndex& index) {
  if (!index.isValid() || index.internalId() != kTop || isGroup(index.row())) return 0;
  return index.row() == 0 ? 1 : static_cast<int>(conditionPages().size());
}

QModelIndex ConditionListModel::indexOf(int tab, UsageId usage) const {
  if (tab == 1) return index(0, 0);
  if (tab == static_cast<int>(conditionPages().size())) return index(topRows() - 1, 0);
  for (int top = 1; top <= groupCount(); ++top) {
    const auto& rows = groupOf(top).rows;
    const auto found = std::ranges::find_if(rows, [&](const ConditionRow& row) {
      return usage != 0 ? row.condition != nullptr && row.condition->usage == usage : row.tab == tab;
    });
    if (found != rows.end()) return index(static_cast<int>(found - rows.begin()), 0, index(top, 0));
  }
  return {};
}

QModelIndex ConditionListModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column < 0 || column >= column_count || row >= rowCount(parent)) return {};
  return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) : kTop);
}

QModelIndex ConditionListModel::parent(const QModelIndex& child) const {
  if (!child.isValid() || child.internalId() == kTop) return {};
  return createIndex(static_cast<int>(child.internalId()), 0, kTop);
}

int ConditionListModel::rowCount(const QModelIndex& parent) const {
  if (!parent.isValid()) return topRows();
  if (parent.internalId() != kTop || parent.column() != 0 || !isGroup(parent.row())) return 0;
  return static_cast<int>(groupOf(parent.row()).rows.size());
}

int ConditionListModel::columnCount(const QModelIndex& /*parent*/) const { return column_count; }

QString ConditionListModel::cellText(const ConditionRow& row, int column) const {
  const ConditionSet& set = session_.settings.set();
  switch (column) {
    case name_column:
      return shown(row.name);
    case value_column:
      return shown(valueText(set, row));
    case share_column: {
      std::optional<Strength> strength;
      if (row.kind == RowKind::match) strength = facts_.matchStrength();
      if (row.condition != nullptr) strength = facts_.strength(*row.condition);
      return strength ? shown(percentText(strength->sixes)) : QString();
    }
    default: {
      if (row.step.empty() || !isTicked(set, row)) return {};
      const auto step = std::ranges::find(funnel_, row.step, &FunnelStep::name);
      return step == funnel_.end() ? QString() : grouped(step->after);
    }
  }
}

// "数值", or with the number of those that are on.
QString ConditionListModel::groupText(const ConditionGroup& group) const {
  const auto on = std::ranges::count_if(group.rows, [&](const ConditionRow& row) {
    return row.condition != nullptr && isTicked(session_.settings.set(), row);
  });
  const QString caption = shown(group.caption);
  return on == 0 ? caption : QStringLiteral("%1（%2）").arg(caption).arg(on);
}

QVariant ConditionListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ConditionRow* row = rowAt(index);
  if (row == nullptr) {
    const bool group = isGroup(index.row());
    if (role == Qt::DisplayRole && index.column() == name_column)
      return group ? groupText(groupOf(index.row())) : shown(conditionPage(tabAt(index)).caption);
    if (role == Qt::ForegroundRole && group) return colours().faint;
    return {};
  }
  switch (role) {
    case Qt::DisplayRole:
      return cellText(*row, index.column());
    case Qt::ToolTipRole:
      return index.column() == value_column ? cellText(*row, value_column)
             : row->condition != nullptr    ? shown(row->condition->definition)
                                            : QVariant();
    case Qt::CheckStateRole:
      if (index.column() != name_column || row->kind == RowKind::shrink) return {};
      return static_cast<int>(isTicked(session_.settings.set(), *row) ? Qt::Checked : Qt::Unchecked);
    case Qt::TextAlignmentRole:
      if (index.column() < share_column) return {};
      return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    case Qt::ForegroundRole:
      if (index.column() == name_column || index.column() == left_column) return {};
      return colours().faint;
    case on_role:
      return isTicked(session_.settings.set(), *row);
    case search_role:
      return shown(row->name) + QLatin1Char(' ') +
             shown(row->tab == 0 ? std::string_view() : conditionPage(row->tab).caption) + QLatin1Char(' ') +
             groupText(groupOf(static_cast<int>(index.internalId())));
    default:
      return {};
  }
}

bool ConditionListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const ConditionRow* row = rowAt(index);
  if (row == nullptr || role != Qt::CheckStateRole) return false;
  Q_EMIT boxClicked(*row, value.toInt() == Qt::Checked);
  return true;
}

QVariant ConditionListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= column_count) return {};
  static const char* const captions[] = {"条件", "允许", "放行", "余"};
  static const char* const tips[] = {"", "现在允许的取值", "全部红球组合中放行的比例",
                                     "按现在的设置过滤，这个条件之后余下的注数"};
  if (role == Qt::DisplayRole) return QString::fromUtf8(captions[section]);
  if (role == Qt::ToolTipRole) return QString::fromUtf8(tips[section]);
  if (role == Qt::TextAlignmentRole && section >= share_column)
    return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
  return {};
}

Qt::ItemFlags ConditionListModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags plain = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  const ConditionRow* row = rowAt(index);
  const bool box = row != nullptr && index.column() == name_column && row->kind != RowKind::shrink;
  return box ? plain | Qt::ItemIsUserCheckable : plain;
}

ConditionList::ConditionList(Session& session, ConditionFacts& facts, QWidget* parent)
    : QWidget(parent),
      model_(new ConditionListModel(session, facts, this)),
      shown_(new OnlyWanted(this)),
      search_(new QLineEdit),
      only_on_(new QCheckBox(QStringLiteral("只看已启用"))),
      tree_(new QTreeView) {
  shown_->setRecursiveFilteringEnabled(true);
  shown_->setSourceModel(model_);
  search_->setObjectName(QStringLiteral("conditionSearch"));
  search_->setPlaceholderText(QStringLiteral("查找条件"));
  search_->setAccessibleName(QStringLiteral("查找条件"));
  search_->setClearButtonEnabled(true);
  only_on_->setObjectName(QStringLiteral("onlyUsedConditions"));
  tree_->setObjectName(QStringLiteral("conditionList"));
  tree_->setAccessibleName(QStringLiteral("过滤条件"));
  tree_->setModel(shown_);
  tree_->setUniformRowHeights(true);
  tree_->setIndentation(12);
  tree_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMinimumWidth(kLeastWidth);
  tree_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  tree_->setTextElideMode(Qt::ElideRight);
  QHeaderView* header = tree_->header();
  header->setSectionsMovable(false);
  header->setStretchLastSection(false);
  header->setMinimumSectionSize(40);
  header->setSectionResizeMode(ConditionListModel::name_column, QHeaderView::Interactive);
  header->setSectionResizeMode(ConditionListModel::value_column, QHeaderView::Stretch);
  const QFontMetrics metrics = fontMetrics();
  header->resizeSection(ConditionListModel::name_column,
                        metrics.horizontalAdvance(QStringLiteral("大小尾七分组")) + 56);
  header->resizeSection(ConditionListModel::share_column,
                        metrics.horizontalAdvance(QStringLiteral(">99.9%")) + 16);
  header->resizeSection(ConditionListModel::left_column,
                        metrics.horizontalAdvance(QStringLiteral("100,000")) + 16);
  auto* head = new QHBoxLayout;
  head->addWidget(search_, 1);
  head->addWidget(only_on_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(6);
  layout->addLayout(head);
  layout->addWidget(tree_, 1);
  for (int top = 1; top <= groupCount(); ++top)
    tree_->setExpanded(shown_->mapFromSource(model_->index(top, 0)), groupOf(top).open);
  for (int top = 0; top < topRows(); ++top) tree_->setFirstColumnSpanned(top, {}, true);
  connect(search_, &QLineEdit::textChanged, this, &ConditionList::filter);
  connect(only_on_, &QCheckBox::clicked, this, &ConditionList::filter);
  connect(tree_->selectionModel(), &QItemSelectionModel::currentChanged, this, &ConditionList::chosen);
  connect(tree_, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (shown_->rowCount(index) > 0) tree_->setExpanded(index, !tree_->isExpanded(index));
  });
  connect(model_, &ConditionListModel::boxClicked, this, &ConditionList::boxClicked);
}

void ConditionList::chosen(const QModelIndex& index) {
  const QModelIndex source = shown_->mapToSource(index.siblingAtColumn(0));
  if (const ConditionRow* row = model_->rowAt(source))
    Q_EMIT wanted(row->tab, row->condition == nullptr ? 0 : row->condition->usage);
  else if (const int tab = ConditionListModel::tabAt(source); tab != 0)
    Q_EMIT wanted(tab, 0);
}

void ConditionList::filter() {
  const QSignalBlocker quiet(tree_->selectionModel());
  static_cast<OnlyWanted*>(shown_)->filter(search_->text().trimmed(), only_on_->isChecked());
  const bool all = search_->text().trimmed().isEmpty() && !only_on_->isChecked();
  for (int top = 0; top < shown_->rowCount(); ++top) {
    const QModelIndex index = shown_->index(top, 0);
    const int source = shown_->mapToSource(index).row();
    tree_->setFirstColumnSpanned(top, {}, true);
    tree_->setExpanded(index, !all || (isGroup(source) && groupOf(source).open));
  }
}

void ConditionList::refresh() {
  model_->refresh();
  if (only_on_->isChecked()) filter();
}

void ConditionList::mark(int tab, UsageId usage) {
  const QSignalBlocker quiet(tree_->selectionModel());
  const QModelIndex index = shown_->mapFromSource(model_->indexOf(tab, usage));
  if (!index.isValid()) {
    tree_->clearSelection();
  } else {
    tree_->setCurrentIndex(index);
    tree_->scrollTo(index);
  }
  tree_->viewport()->update();
}

}  // namespace lotmere::ui
