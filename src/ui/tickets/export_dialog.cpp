#include "ui/tickets/export_dialog.hpp"

#include <QGridLayout>

#include "ui/shell/dialog_parts.hpp"

namespace lotmere::ui {
namespace {

// The formats behind those of single tickets as text.
enum Format { compound_bets = 2, spreadsheet_file, csv_file };

}  // namespace

ExportDialog::ExportDialog(const ExportSwitches& switches, QWidget* parent) : QDialog(parent) {
  setObjectName(QStringLiteral("exportDialog"));
  setWindowTitle(QStringLiteral("数 据 导 出"));
  const std::pair<const char*, bool> content[] = {{"序号(&1)", switches.seq},
                                                  {"期号(&2)", switches.period},
                                                  {"号码(&3)", switches.numbers},
                                                  {"分隔行(&4)", switches.separator}};
  auto* boxes = new QHBoxLayout;
  for (std::size_t i = 0; i < boxes_.size(); ++i) {
    boxes_[i] = new QCheckBox(QString::fromUtf8(content[i].first));
    boxes_[i]->setObjectName(QStringLiteral("exportContent.%1").arg(i));
    boxes_[i]->setChecked(content[i].second);
    boxes->addWidget(boxes_[i]);
  }
  format_ = new QComboBox;
  format_->setObjectName(QStringLiteral("exportFormat"));
  format_->addItems({QStringLiteral("淘宝彩票网格式"), QStringLiteral("财付通彩票格式"),
                     QStringLiteral("复式投注（一行一注复式）"), QStringLiteral("电子表格（.xlsx）"),
                     QStringLiteral("CSV 文件（.csv）")});
  connect(format_, &QComboBox::currentIndexChanged, this, &ExportDialog::showContent);
  format_->setCurrentIndex(switches.file == TicketFile::text          ? switches.format
                           : switches.file == TicketFile::spreadsheet ? int{spreadsheet_file}
                                                                      : int{csv_file});
  auto* grid = new QGridLayout;
  grid->setVerticalSpacing(12);
  grid->addWidget(new QLabel(QStringLiteral("导出内容：")), 0, 0);
  grid->addLayout(boxes, 0, 1);
  grid->addWidget(new QLabel(QStringLiteral("导出格式：")), 1, 0);
  grid->addWidget(format_, 1, 1);
  auto* ok = makeDialogButton("okButton", QStringLiteral("确认"), IsDefault::yes);
  auto* cancel = makeDialogButton("cancelButton", QStringLiteral("取消"));
  connect(ok, &QPushButton::clicked, this, &QDialog::accept);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  auto* layout = makeDialogLayout(this);
  layout->addLayout(grid);
  layout->addLayout(makeDialogFoot({ok, cancel}));
}

bool ExportDialog::compound() const { return format_->currentIndex() == compound_bets; }

// A table has no empty lines.
void ExportDialog::showContent() {
  for (QCheckBox* box : boxes_) box->setEnabled(!compound());
  if (format_->currentIndex() > compound_bets) boxes_.back()->setEnabled(false);
}

ExportSwitches ExportDialog::switches() const {
  const int format = format_->currentIndex();
  ExportSwitches switches{boxes_[0]->isChecked(), boxes_[1]->isChecked(), boxes_[2]->isChecked(),
                          boxes_[3]->isChecked(), format < compound_bets ? format : 0};
  if (format == spreadsheet_file) switches.file = TicketFile::spreadsheet;
  if (format == csv_file) switches.file = TicketFile::csv;
  return switches;
}

}  // namespace lotmere::ui
