#include "ui/main/application.hpp"

#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace lotmere::ui {

void setUpApplication(QApplication& application) {
  QApplication::setApplicationName(QStringLiteral("lotmere"));
  QApplication::setApplicationDisplayName(QStringLiteral("Lotmere 双色球"));  // put behind titles without it
  QApplication::setApplicationVersion(QStringLiteral(LOTMERE_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("io.github.lotmere.Lotmere"));
  const QLocale chinese(QLocale::Chinese, QLocale::China);
  QLocale::setDefault(chinese);
  auto* texts = new QTranslator(&application);
  if (texts->load(chinese, QStringLiteral("qtbase"), QStringLiteral("_"),
                  QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QApplication::installTranslator(texts);
  applyAppearance(application, desktopAppearance(application));
  QApplication::setWindowIcon(programIcon());
}

}  // namespace lotmere::ui
