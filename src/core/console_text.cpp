#include "core/console_text.h"

#include "text/text.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString ConsoleText::Text() const {
  const QString kept = m_text.part(m_text.first(), m_text.end());
  return m_text.first() == 0 ? kept : droppedNotice(m_text.first()) + u"\r\n"_s + kept;
}

void ConsoleText::setText(const QString& text) {
  m_text.clear();
  m_text.append(text);
  Q_EMIT Change(text, true);
}

void ConsoleText::append(const QString& text) {
  if (text.isEmpty()) return;
  m_text.append(text);
  Q_EMIT Change(text, false);
}

void ConsoleText::say(const QString& message) {
  append(u"\r\n"_s + message + u"\r\n"_s);
}

QString ConsoleText::droppedNotice(qsizetype characters) {
  return inFace(u"（前面 %1 个字符已丢弃）"_s, u"(%1 earlier characters were dropped)"_s,
                u"（前面 %1 个字符已丢弃）(%1 earlier characters were dropped)"_s)
      .arg(characters);
}

}  // namespace orvanta
