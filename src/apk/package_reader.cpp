#include "apk/package_reader.h"

#include <QFileInfo>

#include "adb/host.h"
#include "apk/badging.h"
#include "core/workbench.h"
#include "text/bilingual.h"

using namespace Qt::StringLiterals;

namespace orvanta {

namespace {

constexpr qint64 longestBadging = 64 * 1024 * 1024;  // bytes

/// Start-up continues without a package; without this the user would see nothing but empty fields.
void sayUnreadable(Workbench& bench, const QString& output) {
  const QString words = firstWords(output);
  QString message = inFace(u"该文件不是可读的安装包"_s, u"This file is no readable package"_s);
  if (!words.isEmpty()) message += u": "_s + words;
  bench.sayUnderVerdict(message);
  // Its path now has replacement characters, so it names another file or none.
  if (bench.state.package.ApkPath.contains(QChar::ReplacementCharacter) &&
      !QFileInfo::exists(bench.state.package.ApkPath))
    bench.sayUnderVerdict(inFace(u"文件名不是 UTF-8，无法交给工具"_s,
                                 u"The name is not UTF-8 and cannot be handed on to a tool"_s));
}

}  // namespace

QCoro::Task<> readPackage(Workbench& bench) {
  const QString line = badgingLine(Host::current(), bench.state.package.ApkPath);
  bench.objDOS.setBound({longestBadging, true});
  const QString output = co_await bench.runQuietly(bench.objDOS, line);
  bench.objDOS.setBound({});
  readBadging(output, bench.state.package.ManifestFields, bench.state.package.PermissionCount);
  if (bench.objDOS.answered() && bench.state.package.package().isEmpty()) sayUnreadable(bench, output);
}

}  // namespace orvanta
