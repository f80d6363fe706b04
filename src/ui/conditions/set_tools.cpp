#include "ui/conditions/set_tools.hpp"

#include <QFileInfo>

#include "conditions/named_sets.hpp"
#include "ui/conditions/sets_dialog.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr int kShownName = 18;  // characters of a step that a button shows

QString cut(const QString& text) {
  return text.size() <= kShownName ? text : text.left(kShownName) + QStringLiteral("…");
}

}  // namespace

SetTools::SetTools(Session& session, QObject* parent) : QObject(parent), session_(session) {
  Commands& commands = session_.commands;
  undo_ =
      commands.add({"conditions.undo", QStringLiteral("撤销(&U)"), QKeySequence(QStringLiteral("Ctrl+Z"))},
                   [this] { step(&Settings::undo, "已撤销：%1", "没有可以撤销的设置。"); });
  redo_ = commands.add(
      {"conditions.redo", QStringLiteral("重做(&R)"), QKeySequence(QStringLiteral("Ctrl+Shift+Z"))},
      [this] { step(&Settings::redo, "已重做：%1", "没有可以重做的设置。"); });
  commands.add(
      {"sets.save", QStringLiteral("保存为方案(&S)..."), {}, QStringLiteral("把现在的条件存为一个方案")},
      [this] { save(); });
  commands.add({"sets.manage",
                QStringLiteral("管理和比较方案(&M)..."),
                {},
                QStringLiteral("方案与现在的设置有什么不同")},
               [this] { manage(); });
  commands.add({"sets.import", QStringLiteral("从文件读入方案(&F)...")}, [this] { importSet(); });
  connect(&session_.settings, &Settings::stepsChanged, this, &SetTools::showSteps);
  showSteps();
}

void SetTools::showSteps() {
  const NextSteps& steps = session_.settings.steps();
  undo_->setText(steps.undo ? QStringLiteral("撤销：%1(&U)").arg(shown(*steps.undo))
                            : QStringLiteral("撤销(&U)"));
  redo_->setText(steps.redo ? QStringLiteral("重做：%1(&R)").arg(shown(*steps.redo))
                            : QStringLiteral("重做(&R)"));
}

QPushButton* SetTools::makeUndoButton() {
  QPushButton* button = session_.commands.makeButton("undoButton", QStringLiteral("撤销"), undo_);
  const auto show = [this, button] {
    const NextSteps& steps = session_.settings.steps();
    button->setText(steps.undo ? QStringLiteral("↶ 撤销：%1").arg(cut(shown(*steps.undo)))
                               : QStringLiteral("↶ 撤销"));
    button->setToolTip(steps.undo ? shown(*steps.undo) : QString());
  };
  connect(&session_.settings, &Settings::stepsChanged, button, show);
  show();
  return button;
}

void SetTools::step(std::optional<std::string> (Settings::*make)(), const char* done, const char* none) {
  const auto name = (session_.settings.*make)();
  Q_EMIT session_.desk.statusChanged(name ? QString::fromUtf8(done).arg(shown(*name))
                                          : QString::fromUtf8(none));
}

QMenu* SetTools::makeMenu(QWidget* parent) {
  auto* menu = new QMenu(QStringLiteral("方案(&P)"), parent);
  connect(menu, &QMenu::aboutToShow, this, [this, menu] { fill(*menu); });
  return menu;
}

void SetTools::fill(QMenu& menu) {
  menu.clear();
  for (const char* command : {"sets.save", "sets.manage", "sets.import"})
    menu.addAction(session_.commands.action(command));
  const auto sets = session_.store.run(allNamedSets);
  if (!sets.empty()) menu.addSeparator();
  for (const NamedSet& set : sets) {
    QAction* action = menu.addAction(shown(set.name).replace(QLatin1Char('&'), QStringLiteral("&&")));
    connect(action, &QAction::triggered, this,
            [this, name = set.name] { session_.commands.runner().run([&] { load(name); }); });
  }
}

void SetTools::load(const std::string& name) {
  const Outcome outcome = session_.store.run(
      [&](Store& store) { return loadNamedSet(store, session_.desk, name, WithPicks::no); });
  if (outcome == Outcome::done) session_.settings.replace();
}

void SetTools::save() {
  const auto name = session_.desk.askText("方案的名称：", "保存为方案", "");
  if (!name) return;
  const Outcome outcome = session_.store.run([&](Store& store) {
    return keepNamedSet(store, session_.desk,
                        {*name, true, setText(session_.settings.set(), WithPicks::yes)});
  });
  if (outcome == Outcome::done)
    Q_EMIT session_.desk.statusChanged(QStringLiteral("已保存方案“%1”。").arg(shown(*name).trimmed()));
}

void SetTools::manage() {
  SetsDialog dialog(session_, session_.desk.window());
  (void)session_.desk.runDialog(dialog);
}

void SetTools::importSet() {
  const QString file = session_.desk.chooseFile(QStringLiteral("从文件读入方案"),
                                                QStringLiteral("方案 (*.txt);;全部文件 (*)"));
  if (!file.isEmpty()) importFile(file);
}

void SetTools::importFile(const QString& file) {
  const QString proposed = QFileInfo(file).completeBaseName();
  const auto name = session_.desk.askText("方案的名称：", "从文件读入方案", utf8(proposed));
  if (!name) return;
  const Outcome outcome = session_.store.run([&](Store& store) {
    const auto set = readNamedSetFile(session_.desk, file.toStdString(), name, session_.settings.set());
    return set ? keepNamedSet(store, session_.desk, *set) : Outcome::refused;
  });
  if (outcome == Outcome::done)
    Q_EMIT session_.desk.statusChanged(QStringLiteral("已读入方案“%1”。").arg(shown(*name).trimmed()));
}

}  // namespace lotmere::ui
