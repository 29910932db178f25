// The application: survives unforeseen faults, shows tips only where they are wanted, one instance a user.
#pragma once

#include <QApplication>
#include <QLockFile>
#include <QTranslator>
#include <memory>

#include "gui/tips.h"
#include "session/session.h"

namespace tv {

class App : public QApplication {
public:
  App(int& argc, char** argv) : QApplication(argc, argv) {}

  bool notify(QObject* receiver, QEvent* event) override;

  Session* session = nullptr;  // whose tips are shown

private:
  bool notice_tip(QObject* receiver, QEvent* event);

  Tips tips_;
};

// The lock of the one instance; null if another holds it.
std::unique_ptr<QLockFile> take_instance_lock();
// The file that a word of the command line names.
QString absolute_file(const QString& word);
// Says in two languages that the program is running already.
void say_already_running();

// Where the platform keeps the user's documents and shared data.
PlaceHints place_hints();

// The program from start to end; answers with the exit code.
int run_program(App& app, const PlaceHints& hints, const QStringList& loads);

}  // namespace tv
