#include "ui/main/single_window.hpp"

#include <QCryptographicHash>
#include <QLocalSocket>

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

bool SingleWindow::raiseOther(const std::filesystem::path& home) {
  QLocalSocket call;
  call.connectToServer(nameOf(home));
  return call.waitForConnected(kPatience);
}

void SingleWindow::listen(const std::filesystem::path& home) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  // One that a killed process left behind.
  QLocalServer::removeServer(nameOf(home));
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* call = server_.nextPendingConnection()) call->deleteLater();
    Q_EMIT raiseWanted();
  });
  server_.listen(nameOf(home));
}

}  // namespace lotmere::ui
