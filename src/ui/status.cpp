#include "ui/status.h"

#include <QStringList>

#include "text/face.h"

using namespace Qt::StringLiterals;

namespace orvanta {

QString Status::wholeText() const {
  if (face() != Face::AsDesigned)
    return details.shown().isEmpty() ? sentence.shown() : sentence.shown() + u'\n' + details.shown();
  const QStringList chinese = details.chinese.split(u'\n');
  const QStringList english = details.english.split(u'\n');
  QStringList lines(sentence.shown());
  for (qsizetype i = 0; i < qMax(chinese.size(), english.size()); ++i) {
    // A tool's own words are the same in both.
    lines << chinese.value(i);
    if (english.value(i) != chinese.value(i)) lines << english.value(i);
  }
  lines.removeAll(QString());
  return lines.join(u'\n');
}

}  // namespace orvanta
