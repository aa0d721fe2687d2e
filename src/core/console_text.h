#pragma once

#include <QObject>

#include "core/newest_text.h"
#include "text/text.h"

namespace orvanta {

/// The text of the console as written, with its line ends: the output of the tools and the lines of the
/// workflows. If it gets too long its beginning is dropped. The view (core/console.h) follows it.
class ConsoleText : public QObject {
  Q_OBJECT

 public:
  /// The newest 32 Mi characters; if earlier ones were dropped, a first line says so.
  QString Text() const;
  /// The same without that line, by position.
  const NewestText& newest() const { return m_text; }

  /// Replaces the whole text.
  void setText(const QString& text);
  /// Adds `text` at the end, with nothing in between.
  void append(const QString& text);
  /// Adds a line of the program's own: CR LF, `message`, CR LF.
  void say(const QString& message);

  /// Asks the view to show the last place where the text has `words`, which is part of one line.
  void pointOut(const QString& words) { Q_EMIT pointedOut(words); }

  /// The line that stands for `characters` that were dropped.
  static QString droppedNotice(qsizetype characters);

 Q_SIGNALS:
  /// `added` was written at the end; `afresh`: the earlier text is gone.
  void Change(const QString& added, bool afresh);
  void pointedOut(const QString& words);

 private:
  NewestText m_text;
};

}  // namespace orvanta
