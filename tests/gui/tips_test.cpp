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

// One name serves several screens.
TEST_F(TipsShown, AreThoseOfTheScreenFirst) {
  const auto shown = [&](const char* screen, const char* name) {
    return program.find<QWidget>(screen, name)->toolTip().toStdString();
  };
  EXPECT_EQ(shown("Form4", "MPgn"), program.session.language.tip("MPgn"));
  EXPECT_EQ(shown("frmFast", "MPgn"), program.session.language.tip("frmFast.MPgn"));
  EXPECT_NE(shown("FormBorefrict", "sugg_P0"), shown("FormPsel", "sugg_P0"));
}

}  // namespace
}  // namespace tv
