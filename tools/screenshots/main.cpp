// Takes a picture of every page and dialog, over a home of invented draws that goes away again.
//
//   lotmere-screenshots DRAW_LIST TARGET_FOLDER light|dark [WIDTHxHEIGHT]
#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <cstdio>

#include "conditions/condition_store.hpp"
#include "history/curl_fetcher.hpp"
#include "history/download.hpp"
#include "tickets/selection.hpp"
#include "ui/main/application.hpp"
#include "ui/main/program.hpp"
#include "ui/shell/progress_control.hpp"

namespace lotmere::ui {
namespace {

constexpr int kSettling = 700;  // milliseconds, in which what is worked out beside the window comes

// The day behind the last invented draw.
class SampleClock : public Clock {
 public:
  Date today() override { return std::chrono::January / 1 / 2026; }
};

// Photographs every dialog in place of waiting for a person, and answers it.
class PictureDesk : public WindowDesk {
 public:
  PictureDesk(const QString& folder, const QString& suffix) : folder_(folder), suffix_(suffix) {}

  // The name of the next dialog's picture; dialogs without one aren't kept.
  QString next;
  bool answer = true;
  PeriodNo period = 0;  // typed at every question for a period; 0: the one that is proposed

  void save(QWidget& widget, const QString& name) {
    // What is worked out behind a click is there as well.
    QElapsedTimer since;
    since.start();
    while (since.elapsed() < kSettling) QApplication::processEvents();
    const QString path = QDir(folder_).filePath(name + suffix_ + QStringLiteral(".png"));
    if (!widget.grab().save(path, nullptr, 0)) throw std::runtime_error("can't write " + path.toStdString());
    std::puts(path.toUtf8().constData());
  }
  bool runDialog(QDialog& dialog) override {
    if (next.isEmpty()) return answer;
    dialog.show();
    save(dialog, std::exchange(next, QString()));
    dialog.hide();
    return answer;
  }
  QString pickFile(const QString& /*title*/, const QString& /*filter*/, const QString& /*folder*/) override {
    return QStringLiteral("/dev/null");
  }
  QString nameFile(const QString& /*title*/, const QString& /*filter*/,
                   const QString& /*proposed*/) override {
    return {};
  }
  bool openOutside(const QUrl& /*address*/) override { return true; }

 protected:
  bool askUser(std::string_view text, std::string_view title) override {
    WindowDesk::askUser(text, title);
    return answer;
  }
  std::optional<std::string> askUserText(std::string_view prompt, std::string_view title,
                                         std::string_view proposed) override {
    const std::string text = period > 0 ? std::to_string(period) : std::string(proposed);
    WindowDesk::askUserText(prompt, title, text);
    return text;
  }

 private:
  QString folder_;
  QString suffix_;
};

// A home with draws and picked numbers.
void fillHome(const Home& home, WindowDesk& desk, const std::string& draws) {
  Store::create(home.mainDb());
  Store store(home.mainDb());
  const auto fetcher = makeCurlFetcher(desk.course());
  if (downloadAll(store, desk, *fetcher, "file://" + draws, realClock().today()).outcome != Outcome::done)
    throw std::runtime_error("no draw list at " + draws);
  NumberSelection selection;
  for (const int red : {3, 5, 8, 10, 12, 15, 17, 19, 22, 24, 26, 29, 31}) selection.red[red] = PickState::tuo;
  selection.red[12] = PickState::dan;
  for (const int blue : {2, 7, 9, 11, 16}) selection.blue[blue] = PickState::tuo;
  changeSettings(store, [&](ConditionSet& set) { putSelection(set, selection); });
}

class Pictures {
 public:
  Pictures(PictureDesk& desk, const Home& home, QSize size) : desk_(desk), home_(home), size_(size) {}

  void takeAll() {
    program_ = std::make_unique<Program>(home_, desk_, clock_);
    desk_.next = QStringLiteral("first-run");
    if (!program_->start()) throw std::runtime_error("the start came to no end");
    program_->window().resize(size_);
    takePages();
    program_.reset();
    Store(home_.mainDb()).query(R"(UPDATE "用户模式" SET "模式"=2)").run();
    Program program(home_, desk_, clock_);
    desk_.next = QStringLiteral("login");
    desk_.answer = false;
    static_cast<void>(program.start());
  }

 private:
  void takePages() {
    shoot("history");
    give("draws.showTrend");
    shoot("distribution");
    for (const char* box : {"trendGaps", "trendLine", "trendFoot"})
      program_->window().findChild<QAbstractButton*>(QString::fromUtf8(box))->click();
    program_->window().findChild<QComboBox*>(QStringLiteral("trendStatistic"))->setCurrentIndex(1);
    shoot("trend");
    give("draws.showData");
    give("page.2");
    shoot("numbers");
    give("analysis.redOmission");
    shoot("omission");
    give("analysis.redCounts");
    shoot("counts");
    for (const auto& [name, tab] : {std::pair{"values", 2},
                                    {"pair", 11},
                                    {"intervals", 14},
                                    {"places", 15},
                                    {"shapes", 16},
                                    {"groups", 41},
                                    {"match", 42}}) {
      give(ConditionsPage::tabCommand(tab).c_str());
      shoot(name);
    }
    give("conditions.backtest");
    shoot("backtest");
    give("conditions.shrink");
    shoot("shrink");
    give("conditions.show");
    shoot("settings");
    shootDialog("init-prompt", "tickets.init");
    give("tickets.run");
    shoot("tickets");
    shootDialog("export", "tickets.export");
    shootDialog("import", "tickets.import");
    takeCheck();
    give("intervals.divide");
    shoot("division");
    give("help.rules");
    shoot("rules");
    give("help.definitions");
    shoot("definitions");
    shootDialog("message", "help.steps");
    desk_.next = QStringLiteral("tip");
    desk_.showTip("此过滤条件与历史数据有关，只对当前这一期有效。", "信息提示");
    give("page.1");
    auto* progress = program_->window().findChild<ProgressControl*>();
    progress->begin(5000, true);
    progress->setValue(2140);
    shoot("progress");
    progress->end();
  }
  // Tickets of a period that has been drawn, held against it.
  void takeCheck() {
    desk_.period = latestPeriod(program_->store());
    give("tickets.init");
    give("tickets.check");
    shoot("check");
  }

  void give(const char* command) { program_->commands().action(command)->trigger(); }
  void shoot(const char* name) { desk_.save(program_->window(), QString::fromUtf8(name)); }
  void shootDialog(const char* name, const char* command) {
    desk_.next = QString::fromUtf8(name);
    give(command);
  }

  PictureDesk& desk_;
  const Home home_;
  const QSize size_;
  SampleClock clock_;
  std::unique_ptr<Program> program_;
};

int run(QApplication& application) {
  const QStringList arguments = QApplication::arguments();
  const QStringList size = arguments.value(4, QStringLiteral("1240x720")).split(QLatin1Char('x'));
  if (arguments.size() < 4 || size.size() != 2) {
    std::fputs("usage: lotmere-screenshots DRAW_LIST TARGET_FOLDER light|dark [WIDTHxHEIGHT]\n", stderr);
    return 2;
  }
  const bool dark = arguments[3] == QStringLiteral("dark");
  applyAppearance(application, dark ? Appearance::dark : Appearance::light);
  const QTemporaryDir folder;
  const Home home{folder.path().toStdString()};
  PictureDesk desk(arguments[2], dark ? QStringLiteral("-dark") : QString());
  fillHome(home, desk, arguments[1].toStdString());
  Pictures(desk, home, {size[0].toInt(), size[1].toInt()}).takeAll();
  return 0;
}

}  // namespace
}  // namespace lotmere::ui

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  lotmere::ui::setUpApplication(application);
  try {
    return lotmere::ui::run(application);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
  }
}
