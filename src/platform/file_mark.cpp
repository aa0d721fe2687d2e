#include "platform/file_mark.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

// Of a file, size and time come last.
constexpr qsizetype changing = 2;
const QString fileWord = u"file"_s;

QStringList lasting(const QString& mark) {
  QStringList words = mark.split(u' ');
  if (words.constFirst() == fileWord) words.remove(words.size() - changing, changing);
  return words;
}

QStringList sizeAndTime(const QString& mark) {
  const QStringList words = mark.split(u' ');
  return words.constFirst() == fileWord ? words.last(changing) : QStringList();
}

}  // namespace

bool isItself(const QString& path, const QString& mark) {
  return !mark.isEmpty() && lasting(fileMark(path)) == lasting(mark);
}

bool isAlike(const QString& path, const QString& mark) {
  const QStringList wanted = sizeAndTime(mark);
  return !wanted.isEmpty() && sizeAndTime(fileMark(path)) == wanted;
}

}  // namespace orvanta
