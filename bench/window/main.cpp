// Workloads of the window, each with a ratio against a floor measured in the same run; the median of some
// rounds counts. Runs without a screen unless QT_QPA_PLATFORM says otherwise.
//
//   start-3500      from nothing to the painted window over 3,500 draws, against an empty painted window and
//                   the steps that open the store; at most 2
//   history-3500    the grid of all draws read anew and painted, against a plain read of every field
//   tickets-100k    the ticket grid read anew and painted, 99,008 tickets, against a plain read of the rows
//   sheet-3500      the condition page made and painted for the first time over 3,500 draws, against 300 ms;
//                   at most 1
//   click-sheet     a click on a list of the condition sheet, to the repaint, against 30 ms; at most 1
//   alive-100k      a run with every condition on over 99,008 tickets in the window: the longest time that
//                   the window's thread doesn't look at its events, against 50 ms; at most 1
//   stop-pass-100k  the same run stopped in its middle: from the press to the end of the pass under way,
//                   against 20 ms; at most 1
//   stop-100k       the same, to the painted grid, against the write-back of such a run without a window and
//                   the filling of the grid; at most 1.2
//
// --smoke runs them with small sizes, to show that they work; its figures mean nothing.
#include <benchmark/benchmark.h>

#include <QMainWindow>
#include <QTimer>
#include <cstring>

#include "pipeline/run.hpp"
#include "start/startup.hpp"
#include "tickets/init.hpp"
#include "tickets/selection.hpp"
#include "ui/main/application.hpp"
#include "ui/main/program.hpp"
#include "users/user_table.hpp"
#include "workload.hpp"
#include "world.hpp"

namespace lotmere::bench {
namespace {

using benchmark::State;

// In seconds.
constexpr double kPatience = 0.05;
constexpr double kPassEnd = 0.02;
constexpr double kSheet = 0.3;
constexpr double kClick = 0.03;

using Moment = std::chrono::steady_clock::time_point;
Moment now() { return std::chrono::steady_clock::now(); }
double between(Moment from, Moment to) { return std::chrono::duration<double>(to - from).count(); }

// The look of a run at which stop is pressed: in its middle.
constexpr int kStopAt = 40;

// A course that is stopped at a look, and notes when, and when what can't be stopped any more begins behind
// it.
template <class Base>
class StoppedCourse final : public Base {
 public:
  using Base::Base;
  int stop_at = 0;  // 0: never
  int looks = 0;
  Moment pressed;
  Moment pass_ended;

  void begin(std::int64_t leg, Course::Stop stop) override {
    if (stop == Course::Stop::impossible && this->stopRequested()) pass_ended = now();
    Base::begin(leg, stop);
  }
  bool advance(std::int64_t parts) override {
    if (stop_at > 0 && ++looks == stop_at) {
      this->requestStop();
      pressed = now();
    }
    return Base::advance(parts);
  }
};

// The longest time that the window's thread was busy with one thing, from restart() on.
class Heartbeat {
 public:
  Heartbeat() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.callOnTimeout([this] { beat(); });
    timer_.start(1);
  }
  void restart() {
    last_ = now();
    longest_ = 0;
  }
  double longest() {
    beat();
    return longest_;
  }

 private:
  void beat() {
    longest_ = std::max(longest_, between(last_, now()));
    last_ = now();
  }

  QTimer timer_;
  Moment last_ = now();
  double longest_ = 0;
};

// The window's desk with nobody at it.
class EmptyDesk final : public ui::WindowDesk {
 public:
  StoppedCourse<ui::WindowCourse>& course() override { return course_; }
  Heartbeat heartbeat;

 protected:
  void showMessage(std::string_view /*text*/, Tone /*tone*/, std::string_view /*title*/) override {}
  bool askUser(std::string_view /*text*/, std::string_view /*title*/) override { return false; }
  std::optional<std::string> askUserText(std::string_view /*prompt*/, std::string_view /*title*/,
                                         std::string_view /*proposed*/) override {
    heartbeat.restart();
    return std::to_string(kTarget);
  }
  void showTipDialog(std::string_view /*text*/, std::string_view /*title*/) override {}

 private:
  StoppedCourse<ui::WindowCourse> course_{
      work(), [this](std::int64_t total, bool can_stop) { beginJob(total, can_stop); }, [this] { endJob(); }};
};

// The desk of a run without a window that is stopped in its middle.
class StoppedDesk final : public ScriptedDesk {
 public:
  StoppedDesk() { stopped_.stop_at = kStopAt; }
  void showTip(std::string_view /*text*/, std::string_view /*title*/) override {}
  StoppedCourse<lotmere::test::WatchedCourse>& course() override { return stopped_; }

 private:
  StoppedCourse<lotmere::test::WatchedCourse> stopped_;
};

// A home that asks nothing at its start: draws, and the tickets of the coming period.
class WindowWorld {
 public:
  explicit WindowWorld(const Sizes& sizes, bool tickets) {
    world_.addDraws(sizes.draws);
    world_.pick(sizes.reds, sizes.blues);
    if (tickets) {
      world_.useAllConditions(makeTickets(selectionIn(world_.store()), kTarget));
      init();
    }
    check(chooseUserMode(world_.store(), UserMode::single), "the user mode");
  }
  void init() {
    check(initTickets(world_.store(), quiet_, kTarget).outcome == Outcome::done, "initialisation");
  }
  [[nodiscard]] Home home() const { return {world_.folder()}; }
  [[nodiscard]] Store& store() { return world_.store(); }

 private:
  World world_;
  QuietDesk quiet_;
};

void paint(QWidget& window) {
  window.repaint();
  QApplication::processEvents();
}

// A started program.
class Open {
 public:
  explicit Open(const Home& home) : program_(home, desk_) {
    check(program_.start(), "the start");
    paint(program_.window());
  }
  EmptyDesk& desk() { return desk_; }
  ui::Program& program() { return program_; }

 private:
  EmptyDesk desk_;
  ui::Program program_;
};

double startPlainly(const Home& home) {
  return seconds([&] {
    EmptyDesk desk;
    ProgramStart start(home, desk);
    const StartStep steps[] = {start.singleInstance(), start.databasePresence(), start.compaction(),
                               start.sizeGuard(),      start.homeFiles(),        start.mainConnection()};
    check(runSteps(steps).ready, "the plain start");
    QMainWindow window;
    window.resize(1240, 720);
    window.show();
    paint(window);
  });
}

void start3500(State& state, const Sizes& sizes) {
  const WindowWorld world(sizes, false);
  static_cast<void>(startPlainly(world.home()));  // fonts and pictures of the process
  std::vector<double> floors;
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < sizes.rounds; ++round) {
      floors.push_back(startPlainly(world.home()));
      subjects.push_back(seconds([&] { const Open open(world.home()); }));
    }
    report(state, median(subjects), median(floors), median(subjects) / median(floors), 0);
  }
}

double readPlainly(Store& store, const std::string& sql) {
  return seconds([&] {
    Query rows = store.query(sql);
    std::int64_t sum = 0;
    const int columns = rows.statement().getColumnCount();
    while (rows.next())
      for (int i = 0; i < columns; ++i) {
        const SQLite::Column field = rows.statement().getColumn(i);
        sum += field.isText() ? static_cast<std::int64_t>(field.getString().size()) : field.getInt64();
      }
    check(sum > 0, "a read without rows");
  });
}

// A page filled anew and painted, against a plain read of the same rows.
void fill(State& state, const Sizes& sizes, const char* sql, ui::MainWindow::Page page,
          const std::function<void(ui::MainWindow&)>& refill) {
  WindowWorld world(sizes, page == ui::MainWindow::Page::tickets);
  Open open(world.home());
  Store& store = open.program().store();
  ui::MainWindow& window = open.program().window();
  window.showPage(page);
  paint(window);
  std::vector<double> floors;
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < sizes.rounds; ++round) {
      floors.push_back(readPlainly(store, sql));
      subjects.push_back(seconds([&] {
        refill(window);
        paint(window);
      }));
    }
    report(state, median(subjects), median(floors), median(subjects) / median(floors), 0);
  }
}

void history3500(State& state, const Sizes& sizes) {
  fill(state, sizes, R"(SELECT * FROM "历史记录" ORDER BY "期号")", ui::MainWindow::Page::history,
       [](ui::MainWindow& window) { window.findChild<ui::HistoryPage*>()->refreshHistoryView(); });
}

void tickets100k(State& state, const Sizes& sizes) {
  fill(state, sizes,
       R"(SELECT "序号","期号","红球1","红球2","红球3","红球4","红球5","红球6","蓝球","红球中",
           "蓝球中" FROM
         "日志表"
          ORDER BY "期号","序号")",
       ui::MainWindow::Page::tickets,
       [](ui::MainWindow& window) { window.findChild<ui::TicketPage*>()->refreshTickets(); });
}

void sheet3500(State& state, const Sizes& sizes) {
  const WindowWorld world(sizes, false);
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < sizes.rounds; ++round) {
      Open open(world.home());
      subjects.push_back(seconds([&] {
        open.program().window().showPage(ui::MainWindow::Page::conditions);
        paint(open.program().window());
      }));
    }
    report(state, median(subjects), kSheet, median(subjects) / kSheet, 0);
  }
}

void clickSheet(State& state, const Sizes& sizes) {
  const WindowWorld world(sizes, true);
  Open open(world.home());
  ui::MainWindow& window = open.program().window();
  window.showPage(ui::MainWindow::Page::conditions);
  paint(window);
  auto* list = window.findChild<ui::CheckList*>(QStringLiteral("metricValues.0"));
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < 10 * sizes.rounds; ++round)
      subjects.push_back(seconds([&] {
        Q_EMIT list->clicked(list->model()->index(round % 20, 0));
        paint(window);
      }));
    report(state, median(subjects), kClick, median(subjects) / kClick, 0);
  }
}

// Runs over all tickets again and again; `measure` gives the seconds of one.
void runAgain(State& state, const Sizes& sizes, const std::function<double(Open&)>& measure,
              double most = kPatience) {
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < sizes.rounds; ++round) {
      WindowWorld world(sizes, true);
      Open open(world.home());
      open.program().window().showPage(ui::MainWindow::Page::tickets);
      paint(open.program().window());
      subjects.push_back(measure(open));
    }
    report(state, median(subjects), most, median(subjects) / most, 0);
  }
}

void runCommand(Open& open) { open.program().commands().action("tickets.run")->trigger(); }

void alive100k(State& state, const Sizes& sizes) {
  runAgain(state, sizes, [](Open& open) {
    runCommand(open);
    return open.desk().heartbeat.longest();
  });
}

void runStopped(Open& open) {
  open.desk().course().stop_at = kStopAt;
  runCommand(open);
  check(open.desk().course().looks >= kStopAt, "the run was over before the stop");
}

void stopPass100k(State& state, const Sizes& sizes) {
  runAgain(
      state, sizes,
      [](Open& open) {
        runStopped(open);
        return between(open.desk().course().pressed, open.desk().course().pass_ended);
      },
      kPassEnd);
}

// What stays of a run stopped at the same look, written back without a window, and the grid filled with it.
double writeBackAndShow(const Sizes& sizes) {
  WindowWorld world(sizes, true);
  StoppedDesk desk;
  runPipeline(world.store(), desk, kTarget);
  const double written = between(desk.course().pass_ended, now());
  Open open(world.home());
  ui::MainWindow& window = open.program().window();
  window.showPage(ui::MainWindow::Page::tickets);
  return written + seconds([&] {
           window.findChild<ui::TicketPage*>()->refreshTickets();
           paint(window);
         });
}

void stop100k(State& state, const Sizes& sizes) {
  std::vector<double> floors;
  std::vector<double> subjects;
  for (auto _ : state) {
    for (int round = 0; round < sizes.rounds; ++round) {
      floors.push_back(writeBackAndShow(sizes));
      WindowWorld world(sizes, true);
      Open open(world.home());
      open.program().window().showPage(ui::MainWindow::Page::tickets);
      paint(open.program().window());
      runStopped(open);
      paint(open.program().window());
      subjects.push_back(between(open.desk().course().pressed, now()));
    }
    report(state, median(subjects), median(floors), median(subjects) / median(floors), 0);
  }
}

void registerWindowWorkloads(const Sizes& sizes) {
  add("start-3500", [sizes](State& state) { start3500(state, sizes); });
  add("history-3500", [sizes](State& state) { history3500(state, sizes); });
  add("tickets-100k", [sizes](State& state) { tickets100k(state, sizes); });
  add("sheet-3500", [sizes](State& state) { sheet3500(state, sizes); });
  add("click-sheet", [sizes](State& state) { clickSheet(state, sizes); });
  add("alive-100k", [sizes](State& state) { alive100k(state, sizes); });
  add("stop-pass-100k", [sizes](State& state) { stopPass100k(state, sizes); });
  add("stop-100k", [sizes](State& state) { stop100k(state, sizes); });
}

}  // namespace
}  // namespace lotmere::bench

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  lotmere::ui::setUpApplication(application);
  const bool smoke = argc > 1 && std::strcmp(argv[argc - 1], "--smoke") == 0;
  if (smoke) --argc;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  lotmere::bench::registerWindowWorkloads(smoke ? lotmere::bench::kSmoke : lotmere::bench::kFull);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
