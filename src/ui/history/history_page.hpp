// The page of draws: the strip to type one, the grid or the distribution below it, and the
// commands that add, fetch, delete, search and export.
#pragma once

#include <QButtonGroup>
#include <QLabel>
#include <QRadioButton>
#include <QStackedWidget>
#include <QWidget>
#include <functional>
#include <string>

#include "history/addresses.hpp"
#include "history/draw_import.hpp"
#include "ui/history/distribution_grid.hpp"
#include "ui/history/entry_strip.hpp"
#include "ui/history/history_model.hpp"
#include "ui/shell/job_bar.hpp"
#include "ui/shell/session.hpp"
#include "ui/widgets/frozen_grid.hpp"

namespace lotmere::ui {

class HistoryPage : public QWidget {
  Q_OBJECT

 public:
  // Registers its commands; shows no draws before refreshHistoryView(). The session outlives the page.
  explicit HistoryPage(Session& session, QWidget* parent = nullptr);

  // Shows the newest hundred draws or all, by the option, as rows or as their distribution. What stands in
  // the filter row is emptied with it. Throws SQLite::Exception when the store refuses.
  void refreshHistoryView();

  // Leaves the span and the widths of the columns for the next start.
  void remember();

  // Proposes the date and the period of the draw that comes next.
  void loadEntry();

  // Fetches the draw list and merges it. To be called inside a command.
  void download();

  // Adds the draws of a file. To be called inside a command.
  void importFile(const QString& file);

  // Asks an outdated history for its draws: the download, and where it is empty also a file or a copied list.
  // To be called inside a command.
  void offerDraws();

  // Where a download shows its course; the page's own bar until this is called. `view` outlives the page.
  void setProgress(ProgressView& view) { download_view_ = &view; }

 Q_SIGNALS:
  // A command of the menu asks for this page to stand in front.
  void wanted();
  // Draws were added, replaced or removed.
  void historyChanged();

 private:
  void changeStored(AddressUse use);
  void makeCommands();
  void makeMenuCommands();
  void makeViews();
  void makeOptions();
  QLayout* placeTools();
  QWidget* makeExtras();
  void followRuns();

  [[nodiscard]] bool showsChart() const { return modes_->checkedId() == 1; }
  void showMode(int mode);
  void showSpan(int span);
  void fillHistoryGrid();
  void showDistribution();

  void addDraw();
  void importDraws();
  void pasteDraws();
  void storeList(const std::function<DrawImport(Store&)>& import);
  // Behind draws that came: shows them and chooses those that are newer than `before`.
  void showCame(PeriodNo before);
  void removeDraw();
  void removeSelected();
  void removeTyped(const std::string& typed);
  // The boxes of the filter row: searches where something stands there, else leads the user to them.
  void promptSearch();
  void search();
  void clearFilter();
  void exportHistory();
  void queryDetail();
  // Opens with the desktop's program, or tells where it is in a line that starts with `elsewhere`.
  void open(const QUrl& url, const QString& elsewhere);

  Session& session_;
  HistoryModel model_;
  JobBar* bar_;
  ProgressView* download_view_;
  EntryStrip* strip_;
  QStackedWidget* views_;
  FrozenGrid* grid_;
  DistributionGrid* distribution_;
  QLabel* empty_;
  QWidget* extras_ = nullptr;
  QButtonGroup* modes_;     // `historyMode`: 0 the grid, 1 the distribution
  QButtonGroup* spans_;     // `historySpan`: 0 the newest hundred, 1 all
  std::string list_typed_;  // the addresses as they were typed the last time, until one leads somewhere
  std::string page_typed_;
};

}  // namespace lotmere::ui
