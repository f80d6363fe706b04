#include "ui/history_page.hpp"
namespace lotmere::ui {
HistoryPage::HistoryPage(Session& session, QWidget* parent) : QWidget(parent), session_(session) {
  for (const char* n : {"mnu_AutoUpdate", "mnu_InputKaiJian", "mnu_HistoryTubiao", "mnu_HistoryData",
                        "mnu_HistoryShowAll", "mnu_HistoryShow100", "mnu_DownloadAddress", "cmm_kjqk"})
    session.commands.add({n, QString::fromUtf8(n)}, [] {});
}
void HistoryPage::load_Entry() {
  session_.entry_date = upcomingDrawDate(session_.store, session_.clock.today());
}
}  // namespace lotmere::ui
