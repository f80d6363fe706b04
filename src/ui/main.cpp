#include <sys/stat.h>

#include <QCommandLineParser>
#include <csignal>
#include <filesystem>

#include "ui/application.hpp"
#include "ui/end_watch.hpp"
#include "ui/program.hpp"

namespace {

// The folder that the command line names, else the program's own or the user's.
lotmere::Home home_Of(const QString& named) {
  if (!named.isEmpty()) return {std::filesystem::path(named.toStdString())};
  return lotmere::find_Home(QCoreApplication::applicationDirPath().toStdString(),
                            qEnvironmentVariable("XDG_DATA_HOME").toStdString(),
                            qEnvironmentVariable("HOME").toStdString());
}

}  // namespace

int main(int argc, char** argv) {
  ::umask(S_IRWXG | S_IRWXO);     // what the program writes is its owner's to read
  std::signal(SIGXFSZ, SIG_IGN);  // a file that may grow no further is a full disk, which is told
  QApplication application(argc, argv);
  lotmere::ui::set_UpApplication(application);
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("双色球选号、过滤、缩水工具"));
  parser.addHelpOption();
  parser.addVersionOption();
  const QCommandLineOption home(QStringLiteral("home"), QStringLiteral("数据所在的文件夹"),
                                QStringLiteral("DIR"));
  const QCommandLineOption look(QStringLiteral("appearance"), QStringLiteral("外观：light 或 dark"),
                                QStringLiteral("LOOK"));
  parser.addOptions({home, look});
  parser.process(application);
  if (parser.isSet(look))
    lotmere::ui::apply_Appearance(application, parser.value(look) == QStringLiteral("dark")
                                                   ? lotmere::ui::Appearance::dark
                                                   : lotmere::ui::Appearance::light);
  lotmere::ui::WindowDesk desk;
  lotmere::ui::Program program(home_Of(parser.value(home)), desk);
  const lotmere::ui::EndWatch watch;
  QObject::connect(&watch, &lotmere::ui::EndWatch::end_Asked, &desk, [&program] { program.end(); });
  if (!program.start()) return EXIT_FAILURE;
  const int status = QApplication::exec();
  program.finish();
  return status;
}
