#include <QCommandLineParser>
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>

#include "sample_package.h"

int main(int argc, char** argv) {
  using namespace Qt::StringLiterals;
  QCoreApplication app(argc, argv);
  QCommandLineParser parser;
  parser.setApplicationDescription(u"Makes an APK file for trying things out."_s);
  parser.addHelpOption();
  const QCommandLineOption out(u"out"_s, u"The file to write."_s, u"file"_s);
  const QCommandLineOption package(u"package"_s, u"Package name."_s, u"name"_s, u"com.example.app"_s);
  const QCommandLineOption code(u"version-code"_s, u"Build number."_s, u"number"_s, u"1"_s);
  const QCommandLineOption version(u"version-name"_s, u"Version."_s, u"text"_s, u"1.0"_s);
  const QCommandLineOption label(u"label"_s, u"Name that people read."_s, u"text"_s, u"Example"_s);
  const QCommandLineOption localized(u"localized-label"_s, u"Name in another language, as in zh-rCN=示例."_s,
                                     u"locale=text"_s);
  const QCommandLineOption permission(u"permission"_s, u"Requested permission, full name; may be repeated."_s,
                                      u"name"_s);
  const QCommandLineOption feature(u"feature"_s, u"Required feature, full name; may be repeated."_s,
                                   u"name"_s);
  const QCommandLineOption icon(u"icon"_s, u"With an icon."_s);
  const QCommandLineOption padding(u"padding"_s, u"Incompressible bytes to add."_s, u"bytes"_s, u"0"_s);
  parser.addOptions({out, package, code, version, label, localized, permission, feature, icon, padding});
  parser.process(app);
  if (!parser.isSet(out)) {
    std::fputs("make-sample-package: --out is missing\n", stderr);
    return EXIT_FAILURE;
  }

  orvanta::SamplePackage sample;
  sample.package = parser.value(package);
  sample.versionCode = parser.value(code).toLongLong();
  sample.versionName = parser.value(version);
  sample.label = parser.value(label);
  const QStringList labels = parser.values(localized);
  for (const QString& text : labels)
    sample.localizedLabels.insert(text.section(u'=', 0, 0), text.section(u'=', 1));
  sample.permissions = parser.values(permission);
  sample.features = parser.values(feature);
  sample.icon = parser.isSet(icon);
  sample.paddingBytes = parser.value(padding).toLongLong();
  const QString problem = sample.write(parser.value(out));
  if (problem.isEmpty()) return EXIT_SUCCESS;
  std::fprintf(stderr, "make-sample-package: %s\n", qPrintable(problem));
  return EXIT_FAILURE;
}
