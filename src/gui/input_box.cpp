#include "gui/input_box.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "gui/captions.h"
#include "gui/entry_filter.h"

namespace tv {

std::optional<std::string> run_input_box(const Session& s, const InputBox& box, QWidget* parent) {
  QDialog dialog(parent);
  dialog.setObjectName("FormGetInput");
  auto* layout = new QVBoxLayout(&dialog);
  auto* prompt = new QLabel(qt(box.prompt.text), &dialog);
  auto* answer = new QLineEdit(qt(box.value), &dialog);
  prompt->setBuddy(answer);
  answer->setObjectName("answer");
  answer->selectAll();
  keep_to_page(answer, s);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  for (const char* name : {"ok", "cancel"}) {
    auto* button = new QPushButton(&dialog);
    button->setObjectName(name);
    row->addWidget(button);
    QObject::connect(button, &QPushButton::clicked, &dialog,
                     name[0] == 'o' ? &QDialog::accept : &QDialog::reject);
  }
  dialog.findChild<QPushButton*>("ok")->setDefault(true);
  layout->addWidget(prompt);
  layout->addWidget(answer);
  layout->addLayout(row);
  apply_captions(&dialog, s, "FormGetInput");
  dialog.setWindowTitle(qt(box.title.empty() ? kProgramName : box.title));
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return utf8(answer->text());
}

}  // namespace tv
