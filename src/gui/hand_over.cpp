#include "gui/hand_over.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <memory>
#include <utility>

namespace tv {
namespace {

constexpr int kPatience = 3000;              // ms, of the second start
constexpr int kAgain = 100;                  // ms, until what could not be taken is offered again
constexpr qint64 kLongestMessage = 1 << 16;  // bytes; a path has 4095 at most

QString socket_name() { return instance_place() + ".socket"; }

}  // namespace

QString instance_place() {
  QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  if (folder.isEmpty()) folder = QDir::tempPath();
  return folder + "/ternovale-" + QString::fromLocal8Bit(qgetenv("USER"));
}

// The file's name as the file system has it, ended by a NUL; the answer is one byte.
HandedOver::HandedOver() {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  QLocalServer::removeServer(socket_name());  // of a program that has died: the lock is ours
  server_.listen(socket_name());
  again_.setInterval(kAgain);
  connect(&again_, &QTimer::timeout, this, [this] { deliver(); });
  connect(&server_, &QLocalServer::newConnection, this, [this] {
    while (QLocalSocket* socket = server_.nextPendingConnection()) {
      socket->setReadBufferSize(kLongestMessage);
      connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
      connect(socket, &QLocalSocket::readyRead, this, [this, socket] { receive(socket); });
      receive(socket);
    }
  });
}

void HandedOver::receive(QLocalSocket* socket) {
  const QByteArray message = socket->peek(kLongestMessage);
  const qsizetype end = message.indexOf('\0');
  if (end < 0) return;
  socket->skip(end + 1);
  socket->write("+", 1);
  waiting_ << QFile::decodeName(message.left(end));
  again_.start();
  if (arrived_) arrived_();
}

void HandedOver::deliver_to(std::function<void()> arrived, std::function<bool(const QString&)> take) {
  arrived_ = std::move(arrived);
  take_ = std::move(take);
}

void HandedOver::deliver() {
  if (!take_ || waiting_.isEmpty()) return;
  const QString file = waiting_.takeFirst();  // it may ask questions, and more may come meanwhile
  if (!take_(file)) waiting_.prepend(file);
  if (waiting_.isEmpty()) again_.stop();
}

bool hand_over(const QString& file) {
  QLocalSocket socket;
  socket.connectToServer(socket_name());
  if (!socket.waitForConnected(kPatience)) return false;
  socket.write(QFile::encodeName(file) + '\0');
  return socket.waitForReadyRead(kPatience) && socket.read(1) == "+";
}

}  // namespace tv
