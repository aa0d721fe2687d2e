#include "ui/long_message.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <limits>

#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr int lineWidth = 460;
constexpr int foldedLines = 12;
constexpr int slack = 4;              // without it the last line would count as not fitting
constexpr int mostMeasured = 40'000;  // characters, more than any screen has room for
constexpr int any = std::numeric_limits<int>::max();

struct Extent {
  int lines = 0;
  double height = 0;
};

/// Adds the size of `paragraph` broken into lines, up to `mostLines` in all.
void add(Extent& extent, const QString& paragraph, const QFont& font, int mostLines) {
  QTextLayout layout(paragraph.left(mostMeasured), font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  while (extent.lines < mostLines) {
    QTextLine line = layout.createLine();
    if (!line.isValid()) break;
    line.setLineWidth(lineWidth);
    extent.height += line.height();
    ++extent.lines;
  }
  layout.endLayout();
}

}  // namespace

bool LongMessage::isNeededFor(const QString& text, const QFont& font) {
  const QFontMetrics metrics(font);
  Extent extent;
  for (const QString& paragraph : text.split(u'\n')) {
    add(extent, paragraph, font, foldedLines + 1);
    if (extent.lines > foldedLines) return true;
    for (const QString& word : paragraph.split(u' ')) {
      if (metrics.horizontalAdvance(word) > lineWidth) return true;
    }
  }
  return false;
}

LongMessage::LongMessage(const MessageBox& box, const QString& text, const QIcon& icon, QWidget* parent)
    : QDialog(parent), m_text(new QPlainTextEdit(text, this)), m_more(new QPushButton(this)) {
  setWindowTitle(box.title);
  auto* sign = new QLabel(this);
  const int signSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
  sign->setPixmap(icon.pixmap(QSize(signSize, signSize), devicePixelRatio()));

  m_text->setObjectName(u"boxText"_s);
  m_text->setAccessibleName(inFace(u"消息"_s, u"Message"_s));
  m_text->setReadOnly(true);
  m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  m_text->setTabChangesFocus(true);
  m_text->setFrameShape(QFrame::NoFrame);
  m_text->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  m_text->viewport()->setAutoFillBackground(false);
  m_text->document()->setDocumentMargin(0);
  m_text->setFixedWidth(lineWidth + m_text->verticalScrollBar()->sizeHint().width());

  m_more->setObjectName(u"boxMore"_s);
  m_more->setAutoDefault(false);
  m_more->setCheckable(true);
  m_more->setVisible(textHeight(foldedLines + 1, any) > textHeight(foldedLines, any));
  connect(m_more, &QPushButton::toggled, this, [this](bool unfolded) { fold(!unfolded); });

  const bool yesNo = box.buttons == BoxButtons::YesNo;
  auto* buttons =
      new QDialogButtonBox(yesNo ? QDialogButtonBox::Yes | QDialogButtonBox::No : QDialogButtonBox::Ok, this);
  connect(buttons, &QDialogButtonBox::clicked, this,
          [this, buttons](QAbstractButton* button) { done(buttons->standardButton(button)); });

  auto* grid = new QGridLayout(this);
  grid->setHorizontalSpacing(16);
  grid->addWidget(sign, 0, 0, Qt::AlignTop);
  grid->addWidget(m_text, 0, 1);
  grid->addWidget(m_more, 1, 1, Qt::AlignLeft);
  grid->addWidget(buttons, 2, 0, 1, 2);
  grid->setSizeConstraint(QLayout::SetFixedSize);
  fold(true);
  const bool noFirst = box.preselected == BoxAnswer::No;
  QPushButton* first = buttons->button(!yesNo    ? QDialogButtonBox::Ok
                                       : noFirst ? QDialogButtonBox::No
                                                 : QDialogButtonBox::Yes);
  first->setDefault(true);
  first->setFocus();
}

/// The height of the text in pixels.
int LongMessage::textHeight(int mostLines, int mostHeight) const {
  Extent extent;
  for (QTextBlock block = m_text->document()->begin(); block.isValid(); block = block.next()) {
    add(extent, block.text(), m_text->font(), mostLines);
    if (extent.lines >= mostLines || extent.height >= mostHeight) break;
  }
  return std::min(static_cast<int>(std::ceil(extent.height)) + slack, mostHeight);
}

void LongMessage::fold(bool folded) {
  m_more->setText(folded ? u"▸ "_s + inFace(u"全部显示"_s, u"Show all"_s)
                         : u"▾ "_s + inFace(u"收起"_s, u"Show less"_s));
  const QRect room = screen()->availableGeometry();
  const int others = folded ? 0 : frameGeometry().height() - m_text->height();
  m_text->setFixedHeight(folded ? textHeight(foldedLines, room.height() / 2)
                                : textHeight(any, room.height() - others));
  layout()->activate();
  if (folded) return;
  const int beyond = frameGeometry().bottom() - room.bottom();
  if (beyond > 0) move(x(), std::max(room.top(), y() - beyond));
}

void LongMessage::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    QGuiApplication::clipboard()->setText(m_text->toPlainText());
  } else {
    QDialog::keyPressEvent(event);
  }
}

}  // namespace orvanta
