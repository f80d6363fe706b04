#include "ui/history/history_model.hpp"

#include <QApplication>
#include <algorithm>
#include <limits>

#include "catalogue/draw_columns.hpp"
#include "ui/look/ball_delegate.hpp"
#include "ui/look/balls.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"

namespace lotmere::ui {
namespace {

constexpr int kMissing = std::numeric_limits<int>::min();
constexpr int kTwipsPerPixel = 15;
constexpr int kBallColumnTwips = 510;
constexpr int kPatternColumnTwips = 3400;
constexpr int kCellPadding = 16;

bool isNumber(int column) { return drawColumns()[column].type == DrawColumnType::whole; }

int toldTwips(int column) {
  if (HistoryModel::isNumberOfDraw(column)) return kBallColumnTwips;
  if (drawColumns()[column].isPattern()) return kPatternColumnTwips;
  const std::string& name = drawColumns()[column].name;
  if (name == "期号") return 840;
  if (name == "开奖日期") return 1110;
  if (name == "连号") return 735;
  return name == "和值" ? 800 : 0;
}

// The longest text that a column of numbers or dates holds as a rule.
QString sampleText(int column) {
  if (column == 0) return QStringLiteral("2000000");
  return drawColumns()[column].type == DrawColumnType::date ? QStringLiteral("2000-00-00") : QString();
}

}  // namespace

HistoryModel::HistoryModel(QObject* parent) : QAbstractTableModel(parent), fields_(drawColumns().size()) {}

HistoryModel::Rows HistoryModel::read(Store& store, PeriodRange range, const SearchCondition& condition) {
  std::vector<Field> fields(drawColumns().size());
  int rows = 0;
  searchDraws(store, condition, [&](const Query& row) {
    const PeriodNo period = row.number(0);
    if (period < range.from || period > range.to) return;
    for (int column = 0; column < std::ssize(fields); ++column) {
      if (!isNumber(column)) {
        fields[column].texts.push_back(shown(row.text(column)));
        continue;
      }
      const int last = !isNumberOfDraw(column) ? 0 : column == kBlueColumn ? kBlueCount : kRedCount;
      const int number = last > 0 ? row.numberUpTo(column, last) : row.number(column);
      fields[column].numbers.push_back(number == 0 && row.text(column).empty() ? kMissing : number);
    }
    ++rows;
  });
  return {std::move(fields), rows};
}

int HistoryModel::show(Rows rows) {
  beginResetModel();
  fields_ = std::move(rows.fields);
  rows_ = rows.count;
  endResetModel();
  return rows_;
}

int HistoryModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int HistoryModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(fields_.size());
}

QString HistoryModel::text(int row, int column) const {
  if (!isNumber(column)) return fields_[column].texts[row];
  const int number = fields_[column].numbers[row];
  if (number == kMissing) return {};
  return isNumberOfDraw(column) ? QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'))
                                : QString::number(number);
}

QVariant HistoryModel::ballFace(int row, int column) const {
  if (!isNumberOfDraw(column)) return {};
  const bool blue = column == kBlueColumn;
  const int number = fields_[column].numbers[row];
  if (number < 1) return {};
  return static_cast<int>(blue ? BallFace::blue : BallFace::red);
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const int column = index.column();
  const bool number = isNumberOfDraw(column);
  switch (role) {
    case Qt::DisplayRole:
      return text(index.row(), column);
    case kBallRole:
      return ballFace(index.row(), column);
    case Qt::BackgroundRole:
      return column < kFirstRedColumn ? QVariant(colours().identity) : QVariant();
    case Qt::ForegroundRole:
      if (!number) return {};
      return column == kBlueColumn ? colours().blue_text : colours().red_text;
    case Qt::FontRole: {
      if (!number) return {};
      QFont bold = QApplication::font();
      bold.setBold(true);
      return bold;
    }
    case Qt::TextAlignmentRole:
      return static_cast<int>(column >= kFirstRedColumn ? Qt::AlignCenter : Qt::AlignLeft | Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant HistoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (role != Qt::DisplayRole || orientation != Qt::Horizontal || section < 0 || section >= columnCount())
    return {};
  const std::string& name = drawColumns()[section].name;
  return name == "和值" ? QStringLiteral("总和值") : shown(name);
}

bool HistoryModel::isWorkColumn(int column) { return drawColumns()[column].is_work; }

int HistoryModel::columnWidth(int column, const QFontMetrics& metrics) const {
  const QString caption = headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  const QString sample = sampleText(column);
  return std::max({toldTwips(column) / kTwipsPerPixel, metrics.horizontalAdvance(caption) + kCellPadding,
                   metrics.horizontalAdvance(sample) + kCellPadding});
}

}  // namespace lotmere::ui
