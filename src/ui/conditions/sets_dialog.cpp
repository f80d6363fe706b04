#include "ui/conditions/sets_dialog.hpp"

#include <QHeaderView>
#include <algorithm>

#include "base/platform.hpp"
#include "start/home.hpp"
#include "ui/look/text.hpp"
#include "ui/shell/dialog_parts.hpp"

namespace lotmere::ui {

SetsDialog::SetsDialog(Session& session, QWidget* parent)
    : QDialog(parent),
      session_(session),
      names_(new QListWidget),
      other_(new QComboBox),
      lines_(new QTableWidget(0, 3)),
      summary_(new QLabel) {
  setWindowTitle(QStringLiteral("方案"));
  resize(760, 460);
  names_->setObjectName(QStringLiteral("setNames"));
  names_->setAccessibleName(QStringLiteral("方案的名称"));
  names_->setMaximumWidth(220);
  other_->setObjectName(QStringLiteral("comparedWith"));
  other_->setAccessibleName(QStringLiteral("比较的对象"));
  lines_->setObjectName(QStringLiteral("setDifferences"));
  lines_->setAccessibleName(QStringLiteral("不同的项目"));
  lines_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  lines_->verticalHeader()->hide();
  lines_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  summary_->setObjectName(QStringLiteral("setSummary"));
  auto* head = new QHBoxLayout;
  head->addWidget(summary_, 1);
  head->addWidget(new QLabel(QStringLiteral("比较：")));
  head->addWidget(other_);
  auto* right = new QVBoxLayout;
  right->addLayout(head);
  right->addWidget(lines_, 1);
  auto* middle = new QHBoxLayout;
  middle->addWidget(names_);
  middle->addLayout(right, 1);
  auto* use = makeDialogButton("loadSet", QStringLiteral("读入方案"));
  auto* use_all = makeDialogButton("loadSetWithNumbers", QStringLiteral("连选号读入"));
  auto* gone = makeDialogButton("deleteSet", QStringLiteral("删除方案"));
  auto* file = makeDialogButton("exportSet", QStringLiteral("存为文件..."));
  auto* close = makeDialogButton("closeSets", QStringLiteral("关闭"), IsDefault::yes);
  auto* layout = makeDialogLayout(this);
  layout->addLayout(middle, 1);
  layout->addLayout(makeDialogFoot({use, use_all, file, gone, close}));
  connect(names_, &QListWidget::currentRowChanged, this, &SetsDialog::compare);
  connect(other_, &QComboBox::activated, this, &SetsDialog::compare);
  connect(use, &QPushButton::clicked, this, [this] { load(WithPicks::no); });
  connect(use_all, &QPushButton::clicked, this, [this] { load(WithPicks::yes); });
  connect(gone, &QPushButton::clicked, this, &SetsDialog::remove);
  connect(file, &QPushButton::clicked, this, &SetsDialog::writeFile);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  readSets();
}

void SetsDialog::readSets(const std::string& name) {
  all_ = session_.store.run(allNamedSets);
  {
    const QSignalBlocker quiet(names_);
    names_->clear();
    other_->clear();
    other_->addItem(QStringLiteral("现在的设置"));
    for (const NamedSet& set : all_) {
      names_->addItem(set.with_picks ? shown(set.name) + QStringLiteral("（含选号）") : shown(set.name));
      other_->addItem(shown(set.name));
    }
    const auto found = std::ranges::find(all_, name, &NamedSet::name);
    names_->setCurrentRow(all_.empty()          ? -1
                          : found == all_.end() ? 0
                                                : static_cast<int>(found - all_.begin()));
  }
  compare();
}

void SetsDialog::compare() {
  lines_->setRowCount(0);
  const int row = names_->currentRow();
  if (row < 0) return summary_->setText(QStringLiteral("还没有方案。用“保存为方案”把现在的条件存起来。"));
  const NamedSet& set = all_[static_cast<std::size_t>(row)];
  const NamedSet* other =
      other_->currentIndex() > 0 ? &all_[static_cast<std::size_t>(other_->currentIndex() - 1)] : nullptr;
  // Picked numbers count where both sides have some.
  const auto picks =
      set.with_picks && (other == nullptr || other->with_picks) ? WithPicks::yes : WithPicks::no;
  const ConditionSet& now = session_.settings.set();
  const auto differences = differencesBetween(
      putNamedSet(now, set, picks), other == nullptr ? now : putNamedSet(now, *other, picks), picks);
  lines_->setHorizontalHeaderLabels({QStringLiteral("项目"), shown(set.name), other_->currentText()});
  lines_->setRowCount(static_cast<int>(differences.size()));
  for (int i = 0; i < lines_->rowCount(); ++i) {
    const SetDifference& line = differences[static_cast<std::size_t>(i)];
    int column = 0;
    for (const std::string* text : {&line.name, &line.before, &line.after}) {
      auto* item = new QTableWidgetItem(shown(*text));
      item->setToolTip(item->text());
      lines_->setItem(i, column++, item);
    }
  }
  summary_->setText(differences.empty() ? QStringLiteral("没有不同。")
                                        : QStringLiteral("%1 项不同").arg(differences.size()));
}

void SetsDialog::withChosen(const std::function<void(const NamedSet&)>& work) {
  const int row = names_->currentRow();
  if (row < 0) return;
  const NamedSet set = all_[static_cast<std::size_t>(row)];
  runGuarded(session_.desk, [&] { work(set); });
}

void SetsDialog::load(WithPicks with_picks) {
  withChosen([&](const NamedSet& set) {
    const Outcome outcome = session_.store.run(
        [&](Store& store) { return loadNamedSet(store, session_.desk, set.name, with_picks); });
    if (outcome != Outcome::done) return;
    session_.settings.replace();
    compare();
  });
}

void SetsDialog::remove() {
  withChosen([&](const NamedSet& set) {
    const Outcome outcome =
        session_.store.run([&](Store& store) { return deleteNamedSet(store, session_.desk, set.name); });
    if (outcome == Outcome::done) readSets();
  });
}

void SetsDialog::writeFile() {
  withChosen([&](const NamedSet& set) {
    const QString file = session_.desk.chooseNewFile(QStringLiteral("方案存为文件"),
                                                     QStringLiteral("方案 (*.txt);;全部文件 (*)"),
                                                     shown(set.name) + QStringLiteral(".txt"));
    if (file.isEmpty()) return;
    const std::string path = file.toStdString();
    if (isOwnFile(session_.home, path)) return session_.desk.tell(kOwnFile);
    session_.desk.work().run([&] { realFiles().writeWhole(path, set.text); });
    summary_->setText(QStringLiteral("已写到 %1").arg(file));
  });
}

}  // namespace lotmere::ui
