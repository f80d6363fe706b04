#include "ui/main/single_window.hpp"

#include <QCryptographicHash>
#include <QDataStream>

namespace lotmere::ui {
namespace {

constexpr int kPatience = 500;  // milliseconds; the other one is on this machine

// The same for every way to write the path, and short enough for a socket.
QString nameOf(const std::filesystem::path& home) {
  std::error_code missing;
  const std::filesystem::path whole = std::filesystem::weakly_canonical(home, missing);
  const QByteArray path = QByteArray::fromStdString((missing ? home : whole).string());
  return QStringLiteral("lotmere-") +
         QString::fromLatin1(QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex());
}

}  // namespace

bool SingleWindow::raiseOther(const std::filesystem::path& home, const QStringList& files) {
  QLocalSocket call;
  call.connectToServer(nameOf(home));
  if (!call.waitForConnected(kPatience)) return false;
  if (files.isEmpty()) return true;
  QDataStream words(&call);
  words << files;
  call.waitForBytesWritten(kPatience);
  call.disconnectFromServer();
  return true;
}

void SingleWindow::listen(const std::filesystem::path& home) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  // One that a killed process left behind.
  QLocalServer::removeServer(nameOf(home));
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* call = server_.nextPendingConnection()) answer(*call);
    Q_EMIT raiseWanted();
  });
  server_.listen(nameOf(home));
}

void SingleWindow::answer(QLocalSocket& call) {
  const auto end = [this, &call] {
    QStringList files;
    QDataStream words(&call);
    words >> files;
    call.deleteLater();
    if (!files.isEmpty()) Q_EMIT filesWanted(files);
  };
  if (call.state() == QLocalSocket::ConnectedState)
    connect(&call, &QLocalSocket::disconnected, this, end);
  else
    end();
}

}  // namespace lotmere::ui
