#include "ui/shell/window_desk.hpp"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <algorithm>
#include <iostream>

#include "ui/look/text.hpp"
#include "ui/look/theme.hpp"
#include "ui/shell/tip_dialog.hpp"

namespace lotmere::ui {
namespace {

constexpr int kProgressEvery = 30;  // milliseconds

constexpr const char* kProgram = "Lotmere 双色球";

QString titleOf(std::string_view title) { return title.empty() ? QString::fromUtf8(kProgram) : shown(title); }

Sign signOf(Tone tone) {
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
QWidget* parentOf(QWidget* window) {
  QWidget* dialog = QApplication::activeModalWidget();
  return dialog != nullptr ? dialog : window;
}

}  // namespace

WindowDesk::WindowDesk(QObject* parent)
    : QObject(parent),
      course_(
          work_, [this](std::int64_t total, bool can_stop) { beginJob(total, can_stop); },
          [this] { endJob(); }) {
  progress_timer_.setInterval(kProgressEvery);
  connect(&progress_timer_, &QTimer::timeout, this, &WindowDesk::showProgress);
}

void WindowDesk::tell(std::string_view text, Tone tone, std::string_view title) {
  work_.callWindow([&] { showMessage(text, tone, title); });
}

bool WindowDesk::ask(std::string_view text, std::string_view title) {
  bool answer = false;
  work_.callWindow([&] { answer = askUser(text, title); });
  return answer;
}

std::size_t WindowDesk::choose(std::string_view text, std::span<const std::string_view> buttons,
                               std::size_t cancel, std::string_view title) {
  std::size_t chosen = cancel;
  work_.callWindow([&] { chosen = chooseUser(text, buttons, cancel, title); });
  return chosen;
}

std::optional<std::string> WindowDesk::askText(std::string_view prompt, std::string_view title,
                                               std::string_view proposed) {
  std::optional<std::string> text;
  work_.callWindow([&] { text = askUserText(prompt, title, proposed); });
  return text;
}

void WindowDesk::showTip(std::string_view text, std::string_view title) {
  work_.callWindow([&] { showTipDialog(text, title); });
}

void WindowDesk::showStatus(std::string_view text) {
  work_.tellWindow([this, line = shown(text)] { Q_EMIT statusChanged(line); });
}

void WindowDesk::showMessage(std::string_view text, Tone tone, std::string_view title) {
  showRunningText();
  if (ending_) return print(text);
  QMessageBox box(QMessageBox::NoIcon, titleOf(title), shown(text), QMessageBox::NoButton, parentOf(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(signPicture(signOf(tone), kSignSize, box.devicePixelRatioF()));
  box.addButton(QStringLiteral("确定"), QMessageBox::AcceptRole);
  runDialog(box);
}

bool WindowDesk::askUser(std::string_view text, std::string_view title) {
  showRunningText();
  QMessageBox box(QMessageBox::NoIcon, titleOf(title), shown(text), QMessageBox::NoButton, parentOf(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(signPicture(Sign::question, kSignSize, box.devicePixelRatioF()));
  QAbstractButton* yes = box.addButton(QStringLiteral("是(&Y)"), QMessageBox::YesRole);
  QPushButton* no = box.addButton(QStringLiteral("否(&N)"), QMessageBox::NoRole);
  box.setEscapeButton(no);
  runDialog(box);
  return box.clickedButton() == yes;
}

std::size_t WindowDesk::chooseUser(std::string_view text, std::span<const std::string_view> buttons,
                                   std::size_t cancel, std::string_view title) {
  showRunningText();
  QMessageBox box(QMessageBox::NoIcon, titleOf(title), shown(text), QMessageBox::NoButton, parentOf(window_));
  box.setTextFormat(Qt::PlainText);
  box.setIconPixmap(signPicture(Sign::question, kSignSize, box.devicePixelRatioF()));
  std::vector<QPushButton*> made;
  for (const std::string_view caption : buttons)
    made.push_back(box.addButton(shown(caption), QMessageBox::ActionRole));
  box.setEscapeButton(made[cancel]);
  box.setDefaultButton(made[cancel]);
  runDialog(box);
  const auto pressed = std::ranges::find(made, box.clickedButton());
  return pressed == made.end() ? cancel : static_cast<std::size_t>(pressed - made.begin());
}

std::optional<std::string> WindowDesk::askUserText(std::string_view prompt, std::string_view title,
                                                   std::string_view proposed) {
  showRunningText();
  QInputDialog box(parentOf(window_));
  box.setWindowTitle(titleOf(title));
  box.setLabelText(shown(prompt));
  box.setTextValue(shown(proposed));
  box.setOkButtonText(QStringLiteral("确定"));
  box.setCancelButtonText(QStringLiteral("取消"));
  if (auto* line = box.findChild<QLineEdit*>()) line->selectAll();
  if (!runDialog(box)) return std::nullopt;
  return utf8(box.textValue());
}

void WindowDesk::showTipDialog(std::string_view text, std::string_view title) {
  showRunningText();
  if (ending_) return print(text);
  TipDialog tip(shown(text), titleOf(title), parentOf(window_));
  runDialog(tip);
}

QString WindowDesk::folder() const {
  return QFileInfo(folder_).isDir() ? folder_
                                    : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString WindowDesk::rememberFolder(const QString& file) {
  if (!file.isEmpty()) {
    folder_ = QFileInfo(file).absolutePath();
    Q_EMIT folderChanged(folder_);
  }
  return file;
}

QString WindowDesk::chooseFile(const QString& title, const QString& filter) {
  return ending_ ? QString() : rememberFolder(pickFile(title, filter, folder()));
}

QString WindowDesk::chooseNewFile(const QString& title, const QString& filter, const QString& proposed) {
  return ending_ ? QString() : rememberFolder(nameFile(title, filter, QDir(folder()).filePath(proposed)));
}

QString WindowDesk::pickFile(const QString& title, const QString& filter, const QString& folder) {
  return QFileDialog::getOpenFileName(window_, title, folder, filter);
}

QString WindowDesk::nameFile(const QString& title, const QString& filter, const QString& proposed) {
  return QFileDialog::getSaveFileName(window_, title, proposed, filter, nullptr,
                                      QFileDialog::DontConfirmOverwrite);
}

bool WindowDesk::runDialog(QDialog& dialog) { return !ending_ && dialog.exec() == QDialog::Accepted; }

bool WindowDesk::openOutside(const QUrl& address) { return !ending_ && QDesktopServices::openUrl(address); }

void WindowDesk::beginEnd() {
  ending_ = true;
  if (jobRunning()) course().requestStop();
  for (QWidget* widget : QApplication::topLevelWidgets())
    if (auto* dialog = qobject_cast<QDialog*>(widget)) dialog->reject();
}

ProgressView* WindowDesk::setProgressView(ProgressView* view) { return std::exchange(view_, view); }

void WindowDesk::showRunningText() {
  const std::string text = runningText().text();
  if (text == shown_text_) return;
  shown_text_ = text;
  Q_EMIT runningTextChanged(shown(text));
}

void WindowDesk::beginJob(std::int64_t total, bool can_stop) {
  running_ = true;
  job_view_ = view_;
  work_.setInput(true);  // the commands are disabled, the stop button isn't
  if (job_view_ != nullptr) job_view_->begin(total, can_stop);
  progress_timer_.start();
  Q_EMIT jobBegun(can_stop);
  if (ending_) course().requestStop();
}

void WindowDesk::showProgress() {
  if (job_view_ != nullptr) job_view_->advance(course_.done());
  showRunningText();
}

void WindowDesk::endJob() {
  running_ = false;
  work_.setInput(false);
  progress_timer_.stop();
  if (job_view_ != nullptr) job_view_->end();
  showRunningText();
  Q_EMIT jobEnded();
}

}  // namespace lotmere::ui
