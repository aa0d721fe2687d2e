#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>
#include <utility>

#include "text/face.h"
#include "text/text.h"

using namespace Qt::StringLiterals;
using namespace orvanta;

namespace {

const QString root = QStringLiteral(ORVANTA_SOURCES);

QString contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool hasChinese(const QString& text) {
  static const QRegularExpression chinese(u"\\p{Han}"_s);
  return text.contains(chinese);
}

QStringList placeholdersIn(const QString& text) {
  static const QRegularExpression placeholder(u"%\\d"_s);
  QStringList found;
  for (auto match = placeholder.globalMatch(text); match.hasNext();) found << match.next().captured();
  found.removeDuplicates();
  found.sort();
  return found;
}

/// The literals of a source in their order; what the compiler puts together is one.
struct Literal {
  QString text;
  QString before;  ///< the code between the literal before and this one
};

QList<Literal> literalsIn(const QString& source) {
  static const QRegularExpression comment(u"(?m)^\\s*//.*$|(?<![:\"/])// .*$"_s);
  static const QRegularExpression literal(u"u?\"((?:[^\"\\\\\\n]|\\\\.)*)\"(?:_s)?"_s);
  const QString code = QString(source).remove(comment);
  QList<Literal> found;
  qsizetype end = 0;
  for (auto match = literal.globalMatch(code); match.hasNext();) {
    const auto one = match.next();
    const QString before = code.mid(end, one.capturedStart() - end);
    QString text = one.captured(1);
    text.replace(u"\\r"_s, u"\r"_s).replace(u"\\n"_s, u"\n"_s).replace(u"\\\""_s, u"\""_s);
    end = one.capturedEnd();
    if (!found.isEmpty() && before.trimmed().isEmpty()) {
      found.last().text += text;
    } else {
      found << Literal{text, before};
    }
  }
  return found;
}

bool isOfDesign(const Literal& literal) {
  static const QRegularExpression call(u"\\b[Dd]esigned(?: \\w+)?\\(\\s*$"_s);
  return literal.before.contains(call);
}

/// Whether a literal stands beside a Chinese one before it as its English.
bool isEnglishBeside(const Literal& english) {
  static const QRegularExpression between(u"^[^;{}]*,[^;{}]*$"_s);
  return !hasChinese(english.text) && english.before.contains(between);
}

QMap<QString, QString> translations(const QString& language) {
  QMap<QString, QString> found;
  QXmlStreamReader xml(contentOf(root + u"/translations/orvanta_%1.ts"_s.arg(language)));
  QString source;
  while (!xml.atEnd()) {
    if (!xml.readNextStartElement()) continue;
    if (xml.name() == "source"_L1) source = xml.readElementText();
    if (xml.name() != "translation"_L1) continue;
    const bool finished = xml.attributes().value("type"_L1).isEmpty();
    found.insert(source, finished ? xml.readElementText() : QString());
  }
  return found;
}

}  // namespace

/// Every text has all three faces.
class TextsTest : public QObject {
  Q_OBJECT

  QMap<QString, QList<Literal>> m_sources;

 private Q_SLOTS:
  void initTestCase() {
    QDirIterator files(root + u"/src"_s, {u"*.cpp"_s, u"*.h"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      const QString path = files.next();
      m_sources.insert(path.mid(root.size() + 5), literalsIn(contentOf(path)));
    }
    QVERIFY(m_sources.size() > 100);
  }

  void designIsTranslated_data() {
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << u"en"_s;
    QTest::newRow("Chinese") << u"zh_CN"_s;
  }
  void designIsTranslated() {
    QFETCH(QString, language);
    const QMap<QString, QString> known = translations(language);
    QStringList missing;
    QStringList unused = known.keys();
    for (const QList<Literal>& literals : std::as_const(m_sources)) {
      for (const Literal& literal : literals) {
        if (!isOfDesign(literal)) continue;
        unused.removeAll(literal.text);
        const QString translated = known.value(literal.text);
        const bool other = translated.isEmpty() ||
                           placeholdersIn(translated) != placeholdersIn(literal.text) ||
                           (language == "en"_L1 && hasChinese(translated));
        if (other) missing << literal.text;
      }
    }
    QVERIFY2(missing.isEmpty(), qUtf8Printable(missing.join(u'\n')));
    QVERIFY2(unused.isEmpty(), qUtf8Printable(unused.join(u'\n')));
  }

  /// A text of ours stands beside its other language, not alone and not joined with it by hand.
  void oursAreInBoth() {
    // What a tool says, what desktops read, and names that languages have for themselves.
    const QStringList others = {u"adb/replies.cpp"_s, u"desktop/desktop_entry.cpp"_s,
                                u"ui/face_switch.cpp"_s};
    QStringList wrong;
    for (auto file = m_sources.cbegin(); file != m_sources.cend(); ++file) {
      if (others.contains(file.key())) continue;
      const QList<Literal>& all = file.value();
      for (qsizetype i = 0; i < all.size(); ++i) {
        if (!hasChinese(all[i].text) || isOfDesign(all[i])) continue;
        // The third is the form with both.
        const bool third = i > 1 && hasChinese(all[i - 2].text) && isEnglishBeside(all[i - 1]) &&
                           all[i].before.trimmed() == ","_L1;
        const bool paired = i + 1 < all.size() && isEnglishBeside(all[i + 1]);
        const bool plain = paired && all[i + 1].before.trimmed() == ","_L1;
        // Both in one literal can show only both.
        static const QRegularExpression byHand(u"\\p{Han}.*\\([^()+]*[a-z]{3}[^()+]*\\)"_s);
        if (!third && all[i].text.contains(byHand)) wrong << file.key() + u": "_s + all[i].text;
        if (!third && (!paired || (plain && placeholdersIn(all[i].text) != placeholdersIn(all[i + 1].text))))
          wrong << file.key() + u": "_s + all[i].text;
      }
    }
    QVERIFY2(wrong.isEmpty(), qUtf8Printable(wrong.join(u'\n')));
  }

  void faces() {
    const Bilingual ours{u"停止"_s, u"Stop"_s};
    const Bilingual special{u"停止"_s, u"Stop"_s, u"停止 Stop"_s};
    const QStringList expected[] = {{u"停止 (Stop)"_s, u"停止 Stop"_s, u"卸载"_s, u"Build APK"_s},
                                    {u"Stop"_s, u"Stop"_s, u"Uninstall"_s, u"Build APK"_s},
                                    {u"停止"_s, u"停止"_s, u"卸载"_s, u"APK 构建号"_s}};
    const Face faces[] = {Face::AsDesigned, Face::English, Face::Chinese};
    for (int i : {1, 2, 0, 2}) {
      setFace(faces[i]);
      QCOMPARE(faceNamed(nameOf(faces[i])), faces[i]);
      const QStringList shown = {ours.shown(), special.shown(), designed(u"卸载"),
                                 Designed(u"Build APK").shown()};
      QCOMPARE(shown, expected[i]);
    }
  }
};

QTEST_GUILESS_MAIN(TextsTest)
#include "texts_test.moc"
