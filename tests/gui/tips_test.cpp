// Tips as they come under the mouse, and their editing.
#include <gtest/gtest.h>

#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include "gui/modal.h"
#include "gui/open_program.h"

namespace tv {
namespace {

class TipsShown : public OpenProgram {
protected:
  TipsShown() { app().session = &s; }
  ~TipsShown() override {
    QToolTip::hideText();
    app().session = nullptr;
  }
  static App& app() { return *static_cast<App*>(qApp); }
  static QString rest_on(QWidget* widget) {
    QToolTip::hideText();
    EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent event(QEvent::ToolTip, widget->rect().center(), widget->mapToGlobal(widget->rect().center()));
    QApplication::sendEvent(widget, &event);
    return QToolTip::isVisible() ? QToolTip::text() : QString();
  }
};

TEST_F(TipsShown, AreWrappedAndEditedByCtrl) {
  auto* field = program.find<QLineEdit>("Form3", "Zkalm");
  const QString tip = rest_on(field);
  EXPECT_TRUE(tip.contains('\n')) << "as wide as the options say";
  EXPECT_EQ(QString(tip).replace('\n', ' '), qt(program.session.language.tip("Zkalm")));
  Modal box([&](QDialog* shown) {
    auto* answer = shown->findChild<QLineEdit*>("answer");
    EXPECT_EQ(answer->text(), qt(program.session.language.tip("Zkalm")));
    answer->setText("my own");
    shown->accept();
  });
  QTest::keyClick(field, Qt::Key_Control);
  EXPECT_EQ(field->toolTip(), "my own");
  EXPECT_EQ(rest_on(field), "my own");
  QToolTip::hideText();
  EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
  QTest::keyClick(field, Qt::Key_Control);  // nothing on show, nothing asked
}

TEST_F(TipsShown, AMissingTipIsToldOnceAndTipsCanBeSwitchedOff) {
  auto* field = program.find<QLineEdit>("Form3", "Zkalm");
  field->setToolTip({});
  EXPECT_EQ(rest_on(field), "No tip english language tip file");
  EXPECT_EQ(rest_on(field), "");
  auto* other = program.find<QLineEdit>("Form3", "Zkalz");
  EXPECT_FALSE(rest_on(other).isEmpty());
  program.run("ttips");
  EXPECT_EQ(rest_on(other), "");
}

}  // namespace
}  // namespace tv
