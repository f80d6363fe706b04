#include "ui/history/paste_dialog.hpp"

#include <QHeaderView>
#include <QLocale>
#include <algorithm>

#include "history/any_draw_list.hpp"
#include "history/upkeep.hpp"
#include "ui/history/list_hint.hpp"
#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/shell/dialog_parts.hpp"

namespace lotmere::ui {
namespace {

constexpr int kReadBehind = 200;  // milliseconds
constexpr int kRowsShown = 500;   // a look at more of them tells nothing more

QTreeWidgetItem* itemOf(const ListedRow& row) {
  auto* item = new QTreeWidgetItem;
  item->setText(0, QString::number(row.entry.line));
  if (row.entry.draw) {
    item->setText(1, QString::number(row.period));
    item->setText(2, shown(drawInWords(formatDate(row.entry.draw->date), row.entry.draw->numbers)));
  } else {
    item->setText(1, row.period == 0 ? QString() : QString::number(row.period));
    item->setText(2, shown(row.entry.fault));
    for (int column = 0; column < 3; ++column) item->setForeground(column, colours().warning);
  }
  return item;
}

}  // namespace

PasteDialog::PasteDialog(const QString& text, Date today, QWidget* parent)
    : QDialog(parent),
      today_(today),
      text_(new QPlainTextEdit(text)),
      draws_(new QTreeWidget),
      summary_(new QLabel) {
  setObjectName(QStringLiteral("pasteDialog"));
  setWindowTitle(QStringLiteral("粘贴开奖号码"));
  text_->setObjectName(QStringLiteral("pastedText"));
  text_->setAccessibleName(QStringLiteral("粘贴的文字"));
  text_->setTabChangesFocus(true);
  text_->setPlaceholderText(listHint());
  draws_->setObjectName(QStringLiteral("understoodDraws"));
  draws_->setAccessibleName(QStringLiteral("读到的内容"));
  draws_->setHeaderLabels({QStringLiteral("行"), QStringLiteral("期号"), QStringLiteral("读到的内容")});
  draws_->setRootIsDecorated(false);
  draws_->setUniformRowHeights(true);
  draws_->setAlternatingRowColors(true);
  summary_->setObjectName(QStringLiteral("understoodSummary"));
  auto* hint = new QLabel(listHint());
  hint->setWordWrap(true);
  store_ = makeDialogButton("okButton", QStringLiteral("存入"), IsDefault::yes);
  auto* cancel = makeDialogButton("cancelButton", QStringLiteral("取消"));
  connect(store_, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = makeDialogLayout(this);
  layout->addWidget(hint);
  layout->addWidget(text_, 2);
  layout->addWidget(draws_, 3);
  layout->addWidget(summary_);
  layout->addLayout(makeDialogFoot({store_, cancel}));
  resize(620, 500);
  timer_.setSingleShot(true);
  timer_.setInterval(kReadBehind);
  timer_.callOnTimeout([this] { understand(); });
  connect(text_, &QPlainTextEdit::textChanged, this, [this] { timer_.start(); });
  understand();
}

void PasteDialog::understand() {
  const AnyDrawList list = readAnyDrawList(utf8(text()), today_);
  const auto is_draw = [](const ListedRow& row) { return row.entry.draw.has_value(); };
  const auto read = std::ranges::count_if(list.rows, is_draw);
  draws_->clear();
  QList<QTreeWidgetItem*> items;
  for (const ListedRow& row : list.rows) {
    if (items.size() == kRowsShown) break;
    items.append(itemOf(row));
  }
  draws_->addTopLevelItems(items);
  draws_->resizeColumnToContents(0);
  draws_->resizeColumnToContents(1);
  const QLocale numbers;
  summary_->setText(read == std::ssize(list.rows)
                        ? QStringLiteral("读到 %1 期").arg(numbers.toString(qlonglong(read)))
                        : QStringLiteral("读到 %1 期，%2 行读不懂，不会存入")
                              .arg(numbers.toString(qlonglong(read)),
                                   numbers.toString(qlonglong(std::ssize(list.rows) - read))));
  store_->setText(QStringLiteral("存入 %1 期").arg(numbers.toString(qlonglong(read))));
  store_->setEnabled(read > 0);
}

}  // namespace lotmere::ui
