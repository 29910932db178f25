// A second start of the program hands its load to the running one, through a local socket beside the lock.
#pragma once

#include <QLocalServer>
#include <QStringList>
#include <QTimer>
#include <functional>

namespace tv {

// Where the lock and the socket of this user's one instance lie, less extension.
QString instance_place();

// Listens from when it is made; what comes before anybody takes it waits.
class HandedOver : public QObject {
public:
  HandedOver();
  // arrived() is called once for each load, take() again and again until it answers that it has taken it.
  void deliver_to(std::function<void()> arrived, std::function<bool(const QString& file)> take);

private:
  void receive(QLocalSocket* socket);
  void deliver();

  QLocalServer server_;
  QTimer again_;
  QStringList waiting_;
  std::function<void()> arrived_;
  std::function<bool(const QString&)> take_;
};

// False if no running program took it.
bool hand_over(const QString& file);

}  // namespace tv
