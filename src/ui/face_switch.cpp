#include "ui/face_switch.h"

#include <QActionGroup>
#include <QMenu>

#include "text/bilingual.h"
#include "ui/worded.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

QString signOf(Face face) {
  switch (face) {
    case Face::AsDesigned:
      break;
    case Face::English:
      return u"EN"_s;
    case Face::Chinese:
      return u"中"_s;
  }
  return u"原"_s;
}

}  // namespace

QString FaceSwitch::nameOf(Face face) {
  switch (face) {
    case Face::AsDesigned:
      break;
    case Face::English:
      return u"English"_s;
    case Face::Chinese:
      return u"简体中文"_s;
  }
  return u"原文 (as designed)"_s;
}

FaceSwitch::FaceSwitch(QWidget* parent) : QToolButton(parent) {
  setObjectName(u"faceSwitch"_s);
  setAutoRaise(true);
  setPopupMode(InstantPopup);
  setFocusPolicy(Qt::TabFocus);
  auto* faces = new QMenu(this);
  auto* one = new QActionGroup(this);
  for (const Face offered : {Face::AsDesigned, Face::English, Face::Chinese}) {
    QAction* action = faces->addAction(nameOf(offered));
    action->setObjectName(orvanta::nameOf(offered));
    action->setCheckable(true);
    one->addAction(action);
    connect(action, &QAction::triggered, this, [this, offered] { Q_EMIT chosen(offered); });
    worded(this, [action, offered] { action->setChecked(face() == offered); });
  }
  setMenu(faces);
  worded(this, [this] {
    setText(signOf(face()));
    setToolTip(inFace(u"语言：%1"_s, u"Language: %1"_s, u"语言 (Language): %1"_s).arg(nameOf(face())));
    setAccessibleName(toolTip());
  });
}

}  // namespace orvanta
