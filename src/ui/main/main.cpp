#include <QCommandLineParser>
#include <QFileInfo>
#include <filesystem>
#include <utility>

#include "base/platform.hpp"
#include "start/transfer.hpp"
#include "ui/main/application.hpp"
#include "ui/main/program.hpp"
#include "ui/shell/end_watch.hpp"

namespace {

// The folder that the command line names, else the program's own or the user's.
lotmere::Home homeOf(const QString& named) {
  if (!named.isEmpty()) return {std::filesystem::path(named.toStdString())};
  return lotmere::findHome(QCoreApplication::applicationDirPath().toStdString(),
                           qEnvironmentVariable("XDG_DATA_HOME").toStdString(),
                           qEnvironmentVariable("HOME").toStdString());
}

}  // namespace

int main(int argc, char** argv) {
  lotmere::prepareProcess();
  QApplication application(argc, argv);
  lotmere::ui::setUpApplication(application);
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("双色球选号、过滤、缩水工具"));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("数据所在的文件夹"),
                                QStringLiteral("DIR"));
  const QCommandLineOption look(QStringLiteral("appearance"), QStringLiteral("外观：light 或 dark"),
                                QStringLiteral("LOOK"));
  parser.addOptions({home, look});
  parser.addPositionalArgument(QStringLiteral("FILE"),
                               QStringLiteral("要打开的文件：开奖记录、号码、方案或全部数据"),
                               QStringLiteral("[FILE]"));
  parser.process(application);
  QStringList files;
  for (const QString& file : parser.positionalArguments()) files.append(QFileInfo(file).absoluteFilePath());
  const lotmere::Home folder = homeOf(parser.value(home));
  if (parser.isSet(look))
    lotmere::ui::applyAppearance(application, parser.value(look) == QStringLiteral("dark")
                                                  ? lotmere::ui::Appearance::dark
                                                  : lotmere::ui::Appearance::light);
  else if (const auto chosen = lotmere::ui::Remembered::look(folder.folder))
    lotmere::ui::applyAppearance(application, *chosen);
  lotmere::ui::WindowDesk desk;
  const lotmere::ui::EndWatch watch;
  for (;;) {
    lotmere::ui::Program program(folder, desk);
    program.openBehindStart(std::exchange(files, {}));
    const auto ends =
        QObject::connect(&watch, &lotmere::ui::EndWatch::endAsked, &desk, [&program] { program.end(); });
    if (!program.start()) return EXIT_FAILURE;
    const int status = QApplication::exec();
    program.finish();
    QObject::disconnect(ends);
    // Else a new start puts it in place.
    if (desk.isEnding() || !lotmere::restoreWaits(folder)) return status;
  }
}
