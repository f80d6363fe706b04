#include "ui/window_desk.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>
#include <iostream>

#include "ui/text.hpp"
#include "ui/theme.hpp"
#include "ui/tip_dialog.hpp"

namespace lotmere::ui {
namespace {

// Long enough that a tight loop loses next to nothing, short enough that a click is taken at once.
constexpr qint64 kServeEvery = 8;
constexpr qint64 kProgressEvery = 30;

constexpr const char* kProgram = "Lotmere";

QString title_Of(std::string_view title) {
  return title.empty() ? QString::fromUtf8(kProgram) : shown(title);
}

Sign sign_Of(Tone tone) {
  switch (tone) {
    case Tone::warning:
      return Sign::warning;
    case Tone::error:
      return Sign::error;
    case Tone::information:
      break;
  }
  return Sign::information;
}

constexpr int kSignSize = 36;

// Where a message goes that nobody sits before the window to read.
void print(std::string_view text) { std::cerr << text << '\n'; }

// A dialog that is open already, or the window.
QWidget* parent_Of(QWidget* window) {
  QWidget* dialog = QApplication::activeModalWidget();
  return dialog != nullptr ? dialog : window;
}

}  // namespace

void WindowDesk::tell(std::string_view text, Tone tone, std::string_view title) {
  show_RunningText();
  if (ending_) return print(text);
  QMessageBox box(QMessageBox::NoIcon, title_Of(title), shown(text), QMessageBox::NoButton,
                  parent_Of(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(sign_Picture(sign_Of(tone), kSignSize, box.devicePixelRatioF()));
  box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
  run_Dialog(box);
}

bool WindowDesk::ask(std::string_view text, std::string_view title) {
  show_RunningText();
  QMessageBox box(QMessageBox::NoIcon, title_Of(title), shown(text), QMessageBox::NoButton,
                  parent_Of(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(sign_Picture(Sign::question, kSignSize, box.devicePixelRatioF()));
  QAbstractButton* yes = box.addButton(QStringLiteral("是(&Y)"), QMessageBox::YesRole);
  QPushButton* no = box.addButton(QStringLiteral("否(&N)"), QMessageBox::NoRole);
  box.setEscapeButton(no);
  run_Dialog(box);
  return box.clickedButton() == yes;
}

std::size_t WindowDesk::choose(std::string_view text, std::span<const std::string_view> buttons,
                               std::size_t cancel, std::string_view title) {
  show_RunningText();
  QMessageBox box(QMessageBox::NoIcon, title_Of(title), shown(text), QMessageBox::NoButton,
                  parent_Of(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(sign_Picture(Sign::question, kSignSize, box.devicePixelRatioF()));
  std::vector<QPushButton*> made;
  for (const std::string_view caption : buttons)
    made.push_back(box.addButton(shown(caption), QMessageBox::ActionRole));
  box.setEscapeButton(made[cancel]);
  box.setDefaultButton(made[cancel]);
  run_Dialog(box);
  const auto pressed = std::ranges::find(made, box.clickedButton());
  return pressed == made.end() ? cancel : static_cast<std::size_t>(pressed - made.begin());
}

std::optional<std::string> WindowDesk::ask_Text(std::string_view prompt, std::string_view title,
                                                std::string_view proposed) {
  show_RunningText();
  QInputDialog box(parent_Of(window_));
  box.setWindowTitle(title_Of(title));
  box.setLabelText(shown(prompt));
  box.setTextValue(shown(proposed));
  box.setOkButtonText(QStringLiteral("确定"));
  box.setCancelButtonText(QStringLiteral("取消"));
  if (auto* line = box.findChild<QLineEdit*>()) line->selectAll();
  if (!run_Dialog(box)) return std::nullopt;
  return utf8(box.textValue());
}

void WindowDesk::show_Tip(std::string_view text, std::string_view title) {
  show_RunningText();
  if (ending_) return print(text);
  TipDialog tip(shown(text), title_Of(title), parent_Of(window_));
  run_Dialog(tip);
}

void WindowDesk::show_Status(std::string_view text) { Q_EMIT status_Changed(shown(text)); }

void WindowDesk::serve() {
  if (since_serve_.isValid() && since_serve_.elapsed() < kServeEvery) return;
  show_RunningText();
  QApplication::processEvents();
  since_serve_.start();
}

QString WindowDesk::choose_File(const QString& title, const QString& filter) {
  return ending_ ? QString() : QFileDialog::getOpenFileName(window_, title, QString(), filter);
}

QString WindowDesk::choose_NewFile(const QString& title, const QString& filter, const QString& proposed) {
  return ending_ ? QString()
                 : QFileDialog::getSaveFileName(window_, title, proposed, filter, nullptr,
                                                QFileDialog::DontConfirmOverwrite);
}

bool WindowDesk::run_Dialog(QDialog& dialog) { return !ending_ && dialog.exec() == QDialog::Accepted; }

bool WindowDesk::open_Outside(const QUrl& address) { return !ending_ && QDesktopServices::openUrl(address); }

void WindowDesk::begin_End() {
  ending_ = true;
  if (job_Running()) request_Stop();
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* dialog = qobject_cast<QDialog*>(widget)) dialog->reject();
}

ProgressView* WindowDesk::set_ProgressView(ProgressView* view) { return std::exchange(view_, view); }

void WindowDesk::show_RunningText() {
  const std::string& text = running_Text().text();
  if (text == shown_text_) return;
  shown_text_ = text;
  Q_EMIT running_TextChanged(shown(text));
}

void WindowDesk::begin_Job(std::int64_t maximum, bool can_stop) {
  const bool first = jobs_.empty();
  jobs_.push_back(view_);
  if (view_ != nullptr) view_->begin(maximum, can_stop);
  if (first) Q_EMIT job_Begun(can_stop);
  if (ending_) request_Stop();
}

void WindowDesk::show_Progress(std::int64_t value) {
  if (jobs_.empty() || jobs_.back() == nullptr) return;
  if (since_progress_.isValid() && since_progress_.elapsed() < kProgressEvery) return;
  jobs_.back()->advance(value);
  since_progress_.start();
}

void WindowDesk::end_Job() {
  if (jobs_.empty()) return;
  if (jobs_.back() != nullptr) jobs_.back()->end();
  jobs_.pop_back();
  show_RunningText();
  if (jobs_.empty()) Q_EMIT job_Ended();
}

}  // namespace lotmere::ui
