#include "ui/shell/written_file.hpp"

#include <QFileInfo>
#include <QUrl>

#include "ui/look/text.hpp"

namespace lotmere::ui {

QString chooseTarget(WindowDesk& desk, const QString& title, const QString& filter, const QString& proposed) {
  QString path = desk.chooseNewFile(title, filter, proposed);
  if (path.isEmpty() || !QFileInfo::exists(path)) return path;
  constexpr std::string_view buttons[] = {"替换", "取消"};
  const auto answer =
      desk.choose(utf8(QStringLiteral("文件已经存在，要替换吗？\r\n%1").arg(path)), buttons, 1);
  return answer == 0 ? path : QString();
}

void tellWritten(WindowDesk& desk, const QString& done, const QString& path) {
  desk.showStatus(utf8(done));
  constexpr std::string_view buttons[] = {"打开", "关闭"};
  if (desk.choose(utf8(done), buttons, 1) == 0 && !desk.openOutside(QUrl::fromLocalFile(path)))
    desk.tell(utf8(QStringLiteral("无法打开，文件在：\r\n%1").arg(path)));
}

}  // namespace lotmere::ui
