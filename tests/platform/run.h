#pragma once

#include <QSignalSpy>
#include <QTest>
#include <memory>
#include <optional>

#include "platform/child_process.h"

namespace orvanta {

/// The line that starts the test child.
inline QString testChild(const QString& steps) {
  return QStringLiteral("\"" ORVANTA_TEST_CHILD "\" ") + steps;
}

/// One run, and what came of it.
struct Run {
  explicit Run(const QString& line) {
    QObject::connect(child.get(), &ChildProcess::block, child.get(), [this](const QByteArray& bytes) {
      if (bytes.isEmpty() || bytes.size() > 256 || ends != 0) orderly = false;
      output += bytes;
      ++blocks;
    });
    QObject::connect(child.get(), &ChildProcess::finished, child.get(), [this] { ++ends; });
    failure = child->start(line);
    if (ends != 0 || blocks != 0) orderly = false;
  }

  bool waitForEnd(int milliseconds = 20'000) {
    if (failure || (ends == 0 && !QSignalSpy(child.get(), &ChildProcess::finished).wait(milliseconds)))
      return false;
    return ends == 1 && orderly;
  }
  bool waitForOutput() {
    return !failure && QTest::qWaitFor([this] { return blocks > 0; }, 20'000);
  }

  std::unique_ptr<ChildProcess> child = ChildProcess::create();
  std::optional<ChildProcess::StartFailure> failure;
  QByteArray output;
  int blocks = 0;
  int ends = 0;
  bool orderly = true;
};

/// Whether the process with this number runs; a zombie does not.
bool runs(const QByteArray& number);

/// Open files, pipes, processes and the like of this program.
qsizetype openHandles();

}  // namespace orvanta
