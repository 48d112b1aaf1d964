// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/process_pipeline.h"

#include "support/suite.h"

#include <csignal>
#include <system_error>
#include <thread>

using namespace velun;

namespace {

using Event = ProcessPipeline::Event;

constexpr std::chrono::seconds kTimeout{60};

QStringList shell(const QString& script) {
  return {"sh", "-c", script};
}

/// Writes `input` and reads until there are `size` bytes of output or no more output.
QByteArray outputOf(ProcessPipeline& pipeline, const QByteArray& input, qsizetype size) {
  std::span<const char> rest(input);
  QByteArray output;
  while (output.size() < size) {
    if (pipeline.exchange(rest, output, kTimeout) != Event::transferred) break;
  }
  return output;
}

/// Reads until there is no more output.
QByteArray lastOutputOf(ProcessPipeline& pipeline) {
  return outputOf(pipeline, QByteArray(), std::numeric_limits<qsizetype>::max());
}

}  // namespace

class ProcessPipelineTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void passesBytesThroughEveryProcess() {
    ProcessPipeline pipeline({{"cat"}, {"cat"}, {"cat"}});
    QCOMPARE(pipeline.processIds().size(), std::size_t{3});
    QCOMPARE(outputOf(pipeline, "one", 3), QByteArray("one"));
    QVERIFY(pipeline.isIdle());
    QCOMPARE(outputOf(pipeline, "two", 3), QByteArray("two"));
  }

  void passesMoreThanTheBuffersHold() {
    ProcessPipeline pipeline({{"cat"}, {"cat"}});
    const QByteArray input(4 << 20, 'x');
    QCOMPARE(outputOf(pipeline, input, input.size()), input);
  }

  void timesOutWhenNothingIsWritten() {
    ProcessPipeline pipeline({{"cat"}});
    std::span<const char> nothing;
    QByteArray output;
    QCOMPARE(pipeline.exchange(nothing, output, std::chrono::milliseconds(1)), Event::timedOut);
  }

  void missingProgramThrows() {
    QVERIFY_EXCEPTION_THROWN(ProcessPipeline({{"cat"}, {"/nonexistent/program"}}),
                             std::system_error);
    QVERIFY_EXCEPTION_THROWN(ProcessPipeline({}), std::system_error);
  }

  void endedProcessIsReportedAfterItsOutput() {
    ProcessPipeline pipeline({shell("printf last")});
    QCOMPARE(lastOutputOf(pipeline), QByteArray("last"));
    QVERIFY(!pipeline.isIdle());
  }

  void outputIsKeptWhenTheInputIsClosed() {
    ProcessPipeline pipeline({shell("printf last")});
    const QByteArray input(4 << 20, 'x');
    std::span<const char> rest(input);
    QByteArray output;
    while (pipeline.exchange(rest, output, kTimeout) == Event::transferred) {
    }
    QCOMPARE(output, QByteArray("last"));
  }

  void interruptEndsTheWait() {
    ProcessPipeline pipeline({{"cat"}});
    const std::jthread interrupting([&pipeline] { pipeline.interrupt(); });
    QCOMPARE(lastOutputOf(pipeline), QByteArray());
    QVERIFY(!pipeline.isIdle());
  }

  void environmentReplacesInheritedVariables() {
    ProcessPipeline pipeline({shell("printf %s \"$LC_ALL $HOME\"; env | grep -c ^LC_ALL=")},
                             {.environment = {"LC_ALL=xx"}});
    QCOMPARE(lastOutputOf(pipeline), "xx " + qgetenv("HOME") + "1\n");
  }

  void errorsAreDiscardedOnRequest() {
    ProcessPipeline pipeline({shell("readlink /proc/self/fd/2")},
                             {.environment = {}, .discardsErrors = true});
    QCOMPARE(lastOutputOf(pipeline), QByteArray("/dev/null\n"));
  }

  void destructionKillsTheProcesses() {
    std::vector<pid_t> processes;
    {
      const ProcessPipeline pipeline({{"sleep", "1000"}, {"cat"}});
      processes = pipeline.processIds();
    }
    QCOMPARE(processes.size(), std::size_t{2});
    for (const pid_t process : processes) QCOMPARE(::kill(process, 0), -1);
  }
};

QTEST_GUILESS_MAIN(ProcessPipelineTest)
#include "process_pipeline_test.moc"
