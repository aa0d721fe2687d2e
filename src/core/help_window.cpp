#include "core/help_window.h"

#include <QHeaderView>
#include <QIcon>
#include <QKeyEvent>
#include <QPainter>

#include "core/control_hints.h"
#include "text/face.h"
#include "ui/face_switch.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int margin = 22;  // as in the picture
constexpr int top = 14;
constexpr int turnHeight = 32;
constexpr int rowHeight = 24;
constexpr int nameWidth = 132;
constexpr int bottom = 8;  // over the picture's last line

QString picture() {
  switch (face()) {
    case Face::AsDesigned:
      break;
    case Face::English:
      return u":/help/help_en.png"_s;
    case Face::Chinese:
      return u":/help/help_zh.png"_s;
  }
  return u":/help/help.png"_s;
}

}  // namespace

Form2::Form2(QWidget* owner)
    : Form(u"Form2"_s, 10800, 8220, owner),
      turn(new Button(u"turn"_s, {u"所有控件"_s, u"All controls"_s},
                      {u"每个控件的名称和作用"_s, u"What each control is called, and what it does"_s}, this)),
      names(new QTableWidget(0, 4, this)) {
  setTitle(Designed(u"Help"));
  setFixedSize(designSize());
  turn->setCheckable(true);
  connect(turn, &QPushButton::toggled, this, &Form2::showNames);
  names->setObjectName(u"names"_s);
  names->setEditTriggers(QAbstractItemView::NoEditTriggers);
  names->setSelectionMode(QAbstractItemView::NoSelection);
  names->setTabKeyNavigation(false);
  names->setShowGrid(false);
  names->setAlternatingRowColors(true);
  names->verticalHeader()->hide();
  names->verticalHeader()->setDefaultSectionSize(rowHeight);
  names->horizontalHeader()->setStretchLastSection(true);
  names->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  names->horizontalHeader()->setHighlightSections(false);
  for (int column = 0; column < 3; ++column) names->setColumnWidth(column, nameWidth);
  names->hide();
  worded(this, [this] { readNames(); });
}

void Form2::readNames() {
  const auto hints = controlHints();
  names->setAccessibleName(inFace(u"控件的名称"_s, u"Names of the controls"_s));
  names->setHorizontalHeaderLabels({FaceSwitch::nameOf(Face::AsDesigned), FaceSwitch::nameOf(Face::English),
                                    FaceSwitch::nameOf(Face::Chinese), inFace(u"作用"_s, u"What it does"_s)});
  names->setRowCount(0);
  for (const ControlHint& hint : hints) {
    if (hint.caption.isEmpty()) continue;
    const int row = names->rowCount();
    names->insertRow(row);
    int column = 0;
    for (const QString& text : {hint.caption.in(Face::AsDesigned), hint.caption.in(Face::English),
                                hint.caption.in(Face::Chinese), hint.sentence().shown()}) {
      auto* cell = new QTableWidgetItem(text);
      cell->setToolTip(text);
      names->setItem(row, column++, cell);
    }
  }
}

void Form2::showNames(bool shown) {
  names->setVisible(shown);
  names->resizeRowsToContents();
  update();
}

void Form2::showEvent(QShowEvent* event) {
  turn->setChecked(false);
  const int wide = turn->sizeHint().width() + margin;
  turn->setGeometry(width() - margin - wide, top, wide, turnHeight);
  names->setGeometry(rect().adjusted(margin, top + turnHeight + top, -margin, -bottom));
  Form::showEvent(event);
}

void Form2::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QIcon(picture()).paint(&painter, rect());
}

void Form2::mousePressEvent(QMouseEvent*) {
  hide();
}

void Form2::keyPressEvent(QKeyEvent* event) {
  for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    if (event->key() == key) hide();
  }
}

}  // namespace orvanta
