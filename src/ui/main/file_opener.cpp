#include "ui/main/file_opener.hpp"

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <utility>

#include "start/home.hpp"
#include "ui/look/text.hpp"

namespace lotmere::ui {
namespace {

constexpr const char* kFilters = "开奖记录、号码、方案或全部数据 (*.txt *.csv *.lotmere);;全部文件 (*)";

// What the lines of a ticket file are, in the question.
QString linesOf(ImportFormat format) {
  switch (format) {
    case ImportFormat::period_numbers:
      return QStringLiteral("每行有期号和一注号码，没有开奖日期");
    case ImportFormat::seq_numbers:
      return QStringLiteral("每行有序号和一注号码");
    case ImportFormat::compound:
      return QStringLiteral("每行一个复式");
    case ImportFormat::numbers:
      break;
  }
  return QStringLiteral("每行一注号码");
}

}  // namespace

FileOpener::FileOpener(Session& session, QWidget& window, FileWays ways)
    : session_(session), window_(window), ways_(std::move(ways)) {
  session_.commands.add(
      {"file.open", QStringLiteral("打开文件(&O)..."), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O),
       QStringLiteral("打开开奖记录、号码、方案或全部数据，先说明文件里是什么")},
      [this] {
        const QString file =
            session_.desk.chooseFile(QStringLiteral("打开文件"), QString::fromUtf8(kFilters));
        if (!file.isEmpty()) openFile(file);
      });
  connect(this, &FileOpener::dropped, this, &FileOpener::open, Qt::QueuedConnection);
  window_.setAcceptDrops(true);
  qApp->installEventFilter(this);
}

bool FileOpener::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  auto* drop = static_cast<QDropEvent*>(event);
  if (widget == nullptr || widget->window() != &window_ || !drop->mimeData()->hasUrls()) return false;
  drop->setDropAction(Qt::CopyAction);  // whoever drags keeps the file
  drop->accept();
  if (type == QEvent::Drop) takeDrop(*drop);
  return true;
}

// Behind the drop: the program from which the file comes waits for its end.
void FileOpener::takeDrop(QDropEvent& drop) {
  QStringList files;
  for (const QUrl& url : drop.mimeData()->urls())
    files.append(url.isLocalFile() ? url.toLocalFile() : url.toString());
  Q_EMIT dropped(files);
}

void FileOpener::open(const QStringList& files) {
  CommandRunner& runner = session_.commands.runner();
  if (runner.isRunning() || QApplication::activeModalWidget() != nullptr)
    return session_.desk.showStatus("正在处理别的操作，文件没有打开。");
  runner.run([this, files] {
    if (files.size() != 1) return session_.desk.tell("一次只能打开一个文件。", Tone::warning);
    openFile(files.front());
  });
}

void FileOpener::openFile(const QString& file) {
  const std::filesystem::path path = QFile::encodeName(file).toStdString();
  const FileContent content =
      session_.desk.work().run([&, today = session_.clock.today()] { return readFileContent(path, today); });
  const std::string name = utf8(QFileInfo(file).fileName());
  WindowDesk& desk = session_.desk;
  const auto ask = [&](const QString& found, std::span<const std::string_view> buttons) {
    return desk.choose(utf8(QStringLiteral("文件“%1”里是%2。要怎么做？").arg(shown(name), found)), buttons,
                       buttons.size() - 1, "打开文件");
  };
  constexpr std::string_view lists[] = {"导入为开奖记录", "导入为号码", "取消"};
  constexpr std::string_view sets[] = {"读入为方案", "取消"};
  switch (content.kind) {
    case FileKind::draws:
    case FileKind::tickets: {
      const bool draws = content.kind == FileKind::draws;
      const std::size_t chosen = ask(draws ? QStringLiteral("开奖记录（每行有期号、日期和号码）")
                                           : QStringLiteral("投注号码（%1）").arg(linesOf(content.format)),
                                     lists);
      if (chosen == 0) ways_.draws(file);
      if (chosen == 1) ways_.tickets(file, content.format);
      return;
    }
    case FileKind::conditions:
      if (ask(QStringLiteral("过滤条件的方案"), sets) == 0) ways_.conditions(file);
      return;
    case FileKind::everything:
      return ways_.everything(file);
    case FileKind::other_text:
      return desk.tell(
          utf8(QStringLiteral("文件“%1”里没有读到开奖记录、号码、方案或全部数据。").arg(shown(name))),
          Tone::warning);
    case FileKind::no_text:
      return desk.tell(
          utf8(QStringLiteral("文件“%1”不是文本文件，电子表格请先另存为 CSV 文件再打开。").arg(shown(name))),
          Tone::warning);
  }
}

}  // namespace lotmere::ui
