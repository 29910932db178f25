// The output window under real wheel, mouse and key events: the section on show, the legend, the fixed head.
#include <gtest/gtest.h>

#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QWheelEvent>

#include "gui/open_program.h"
#include "gui/painter.h"
#include "screens/output_window.h"

namespace tv {
namespace {

class DiagramMouse : public OpenProgram {
protected:
  DiagramMouse() {
    open_example();
    calculate();
    program.run("diagra");
    program.desk->view("Form7")->window->setGeometry(0, 0, 520, 420);
    QApplication::processEvents();
    surface = program.control("Form7", "Pict1");
    charge = s.state.chargeGr;
  }
  Diagram diagram() { return output_diagram(s, surface->width(), surface->height(), qt_text_width); }
  QPoint inside(double across, double up) {
    const DiagramFrame f = diagram().frame;
    return {int(f.left + across * (f.right - f.left)), int(f.bottom - up * (f.bottom - f.top))};
  }
  void wheel(QPoint at, int angle) {
    QWheelEvent event(at, surface->mapToGlobal(at), {}, {0, angle}, Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QApplication::sendEvent(surface, &event);
    EXPECT_TRUE(event.isAccepted());
  }
  void drag(QPoint from, QPoint to) {
    QTest::mousePress(surface, Qt::LeftButton, {}, from);
    for (const QPoint& at : {from + (to - from) / 2, to}) {  // QTest::mouseMove holds no button
      QMouseEvent move(QEvent::MouseMove, at, surface->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
      QApplication::sendEvent(surface, &move);
    }
    QTest::mouseRelease(surface, Qt::LeftButton, {}, to);
  }
  QString shown(const char* label) { return program.find<QLabel>("Form7", label)->text(); }

  QWidget* surface = nullptr;
  double charge = 0;
};

TEST_F(DiagramMouse, WheelAndDragMoveTheSectionAndNothingElse) {
  const DiagramFrame whole = diagram().frame;
  wheel(inside(0.25, 0.75), 240);
  const DiagramFrame closer = diagram().frame;
  EXPECT_NEAR(closer.x_to - closer.x_from, 0.64 * (whole.x_to - whole.x_from), 1e-9);
  EXPECT_NEAR(s.diagram_view.x.from, 0.25 * 0.36, 0.01);
  EXPECT_NEAR(s.diagram_view.y.from, 0.75 * 0.36, 0.01);

  drag(inside(0.6, 0.5), inside(0.5, 0.5));
  EXPECT_NEAR(s.diagram_view.x.from, 0.25 * 0.36 + 0.1 * 0.64, 0.01);
  const QPoint beside = inside(-0.05, 0.5);
  drag(inside(0.2, 0.5), beside);  // ends where a click would fit the load
  EXPECT_EQ(s.state.chargeGr, charge);
  EXPECT_FALSE(s.output_as_text);

  QTest::mouseDClick(surface, Qt::LeftButton, {}, inside(0.5, 0.5));
  EXPECT_TRUE(s.output_as_text);
  program.desk->act([&] { output_switch(s); });
  EXPECT_FALSE(is_whole(s.diagram_view)) << "still there after the text";
  wheel(inside(0.5, 0.5), -120 * 20);
  EXPECT_TRUE(is_whole(s.diagram_view));
  drag(inside(0.6, 0.5), inside(0.3, 0.2));
  EXPECT_TRUE(is_whole(s.diagram_view)) << "nothing to move to";

  // Beside an axis of a section: the wheel zooms it, a click fits to what stands there.
  wheel(inside(-0.05, 0.9), 240);
  EXPECT_EQ(s.diagram_view.x, ViewRange{});
  EXPECT_EQ(s.state.chargeGr, charge);
  const DiagramFrame f = diagram().frame;
  const QPoint click = inside(-0.05, 0.4);
  const auto wanted = fit_click(f, diagram_options(s), {double(click.x()), double(click.y())});
  ASSERT_TRUE(wanted);
  EXPECT_GT(wanted->value, 0.45 * f.y1_to) << "a value of the section, not of the whole axis";
  QTest::mouseClick(surface, Qt::LeftButton, {}, click);
  EXPECT_NEAR(s.result.pMax / 1e6, wanted->value, 0.001 * wanted->value);
  EXPECT_TRUE(is_whole(s.diagram_view)) << "another shot";
}

TEST_F(DiagramMouse, KeysZoomMoveAndComeBack) {
  surface->setFocus();
  for (const int key : {Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Plus}) QTest::keyClick(surface, Qt::Key(key));
  const DiagramView in = s.diagram_view;
  EXPECT_NEAR(in.x.to - in.x.from, 0.512, 1e-9);
  QTest::keyClick(surface, Qt::Key_Right);
  QTest::keyClick(surface, Qt::Key_Up);
  EXPECT_GT(s.diagram_view.x.from, in.x.from);
  EXPECT_GT(s.diagram_view.y.from, in.y.from);
  for (const int key : {Qt::Key_Home, Qt::Key_0, Qt::Key_Escape}) {
    QTest::keyClick(surface, Qt::Key_Plus);
    EXPECT_FALSE(is_whole(s.diagram_view));
    QTest::keyClick(surface, Qt::Key(key));
    EXPECT_TRUE(is_whole(s.diagram_view)) << key;
    EXPECT_TRUE(surface->isVisible()) << "Escape shows the whole before it means anything else";
  }
  QTest::keyClick(surface, Qt::Key_Plus, Qt::ControlModifier);  // the menu's
  EXPECT_FALSE(is_whole(s.diagram_view));
  EXPECT_TRUE(find_command("viewall") && command_enabled(s, *find_command("viewall")));
  QTest::keyClick(surface, Qt::Key_0, Qt::ControlModifier);
  EXPECT_TRUE(is_whole(s.diagram_view));
  EXPECT_FALSE(command_enabled(s, *find_command("viewall")));
}

TEST_F(DiagramMouse, TheReadOutSnapsAndTheLegendHides) {
  const DiagramFrame f = diagram().frame;
  const double peak = s.result.pMax / 1e6, across = s.curve.t[std::size_t(s.result.peakIdx)] - s.curve.t[0];
  QTest::mouseMove(surface, inside(across * 1000 / f.x_to, peak / f.y1_to) + QPoint(0, -6));
  EXPECT_NEAR(shown("y1").section(' ', 0, 0).toDouble(), peak, 0.5);
  EXPECT_FALSE(shown("y2").isEmpty());

  const LegendEntry entry = diagram().legend[0];
  const QPoint sample(int(entry.left) + 4, int(entry.top + entry.bottom) / 2),
      name(int(entry.right) - 4, sample.y());
  QTest::mouseClick(surface, Qt::LeftButton, {}, sample);
  EXPECT_TRUE(s.hidden_curves[0]);
  EXPECT_FALSE(command_checked(s, *find_command("curve_l")));
  QTest::mouseClick(surface, Qt::LeftButton, {}, name);  // picked: shown again
  EXPECT_TRUE(!s.hidden_curves[0] && s.followed_curve == 1);
  QTest::mouseClick(surface, Qt::LeftButton, {}, sample);
  EXPECT_TRUE(s.hidden_curves[0] && s.followed_curve == 0);
  EXPECT_EQ(s.state.chargeGr, charge);
}

TEST_F(DiagramMouse, HeadsOfTablesStayWhileRowsScroll) {
  program.run("nodia");
  auto* table = program.find<QPlainTextEdit>("Form7", "Text1");
  auto* head = table->findChild<QWidget*>("fixed_head");
  table->verticalScrollBar()->setValue(0);
  EXPECT_FALSE(head->isVisible());
  const int heads = output_text_view(s).head_line;
  EXPECT_TRUE(table->document()->findBlockByNumber(heads).text().contains("NR.:"));
  const int rows = table->document()->blockCount();
  table->verticalScrollBar()->setValue(40);
  ASSERT_TRUE(head->isVisible());

  // It shows what the text would show there, also when scrolled to the side.
  const auto picture = [&](QWidget* of, int height) {
    QImage image(QSize(table->viewport()->width(), height), QImage::Format_RGB32);
    image.fill(Qt::white);
    of->render(&image, {}, QRegion(0, 0, image.width(), height));
    return image;
  };
  program.desk->view("Form7")->window->resize(260, 420);
  QApplication::processEvents();
  const int side = table->horizontalScrollBar()->maximum();
  ASSERT_GT(side, 10);
  for (const int across : {0, side}) {
    table->horizontalScrollBar()->setValue(across);
    table->verticalScrollBar()->setValue(heads);
    ASSERT_FALSE(head->isVisible());
    const QImage natural = picture(table->viewport(), head->height() - 1);
    table->verticalScrollBar()->setValue(40);
    ASSERT_TRUE(head->isVisible());
    EXPECT_EQ(picture(head, head->height() - 1), natural) << across;
  }

  // A row that the keys reach is never behind it.
  table->setFocus();
  table->setTextCursor(QTextCursor(table->document()->findBlockByNumber(rows - 3)));
  for (int i = 0; i < rows - 12; ++i) {
    QTest::keyClick(table, Qt::Key_Up);
    if (head->isVisible()) {
      ASSERT_GE(table->cursorRect().top(), head->height() - 1) << table->textCursor().blockNumber();
    }
  }
  EXPECT_LT(table->textCursor().blockNumber(), heads + 5);
  EXPECT_EQ(table->extraSelections().size(), 1) << "the row stands out";
}

}  // namespace
}  // namespace tv
