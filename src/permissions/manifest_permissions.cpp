#include "permissions/manifest_permissions.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "core/state.h"
#include "permissions/permission_list.h"
#include "text/text.h"
#include "ui/twips.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {
constexpr int marginTwips = 120;
constexpr int frameWidthTwips = 8415;
constexpr int frameHeightTwips = 5295;
constexpr int captionBarTwips = 420;
}  // namespace

Form1::Form1(const State& state, QWidget* owner)
    : Form(u"Form1"_s, frameWidthTwips + 2 * marginTwips,
           frameHeightTwips + 2 * marginTwips + captionBarTwips, owner),
      Permissions(new Frame(u"Permissions"_s, Designed(u"Permissions"), this)),
      Label1(new QLabel(Permissions)),
      m_state(state) {
  setTitle(Designed(u"Permissions in Manifest"));
  Label1->setObjectName(u"Label1"_s);
  Label1->setTextFormat(Qt::PlainText);
  Label1->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  Label1->setFocusPolicy(Qt::StrongFocus);  // so that a screen reader comes to it
  Label1->installEventFilter(this);
}

void Form1::Command2_Click() {
  setCaption(permissionList(m_state.package.ManifestFields, m_state.package.PermissionCount));
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
  Label1->setFocus();
}

void Form1::setCaption(const QString& caption) {
  m_caption = caption;
  Label1->setText(QString(caption).replace(u'\r', u'\n'));
  Label1->setAccessibleName(caption.isEmpty() ? Permissions->Caption() : Label1->text());
}

void Form1::Label1_Click() {
  hide();
}

bool Form1::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress) return true;  // or the release goes to the frame
  if (event->type() == QEvent::MouseButtonRelease) {
    const auto* release = static_cast<QMouseEvent*>(event);
    if (release->button() == Qt::LeftButton && Label1->rect().contains(release->pos())) Label1_Click();
    return true;
  }
  return Form::eventFilter(watched, event);
}

void Form1::resizeEvent(QResizeEvent* event) {
  Form::resizeEvent(event);
  const int margin = pixels(marginTwips);
  Permissions->setGeometry(rect().adjusted(margin, margin, -margin, -margin));
  Label1->setGeometry(Permissions->contentArea());
}

void Form1::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    hide();
}

}  // namespace orvanta
