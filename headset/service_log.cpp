#include "service_log.h"

#include <QDateTime>

namespace orvanta::headset {

using namespace Qt::StringLiterals;

namespace {

QByteArray escaped(const QByteArray& text) {
  QByteArray result;
  for (const char c : text) {
    if (c == '\\') {
      result += "\\\\";
    } else if (c == '\n') {
      result += "\\n";
    } else if (c == '\t') {
      result += "\\t";
    } else if (static_cast<quint8>(c) < 0x20 || c == 0x7f) {
      result += "\\x" + QByteArray(1, c).toHex();
    } else {
      result += c;
    }
  }
  return result;
}

}  // namespace

bool ServiceLog::open(const QString& path) {
  m_file.setFileName(path);
  return m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
}

void ServiceLog::write(const QByteArray& service) {
  const QString now = QDateTime::currentDateTime().toString(u"yyyy-MM-dd'T'HH:mm:ss.zzz"_s);
  m_file.write(now.toLatin1() + '\t' + escaped(service) + '\n');
}

}  // namespace orvanta::headset
